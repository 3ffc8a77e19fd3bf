#!/usr/bin/env python3
"""Writes the benchmark's gateway, 280 objects with 3,300 parameters, as input for zrcfg-mkstore.

usage: make_gateway.py OUTDIR      (then zrcfg-mkstore --model OUTDIR/gateway.xml --instances … )
"""
import random
import sys
from pathlib import Path

ROOT = "InternetGatewayDevice."
WAN = ROOT + "WANDevice.{i}.WANConnectionDevice.{i}."
IP = WAN + "WANIPConnection.{i}."
WLAN = ROOT + "LANDevice.{i}.WLANConfiguration.{i}."
HOST = ROOT + "LANDevice.{i}.Hosts.Host.{i}."
PORT = ROOT + "LANDevice.{i}.LANEthernetInterfaceConfig.{i}."

SINGLE = ("DeviceInfo DeviceConfig ManagementServer Time UserInterface LANConfigSecurity CaptivePortal "
          "Layer3Forwarding IPPingDiagnostics TraceRouteDiagnostics NSLookupDiagnostics "
          "DownloadDiagnostics UploadDiagnostics UPnP DynamicDNS ParentalControl Monitoring Syslog "
          "Security Storage Printer Telephony Energy Update").split()

# Parameters of each object beside the counters of the tables below it.
PARAMETERS = {
    ROOT: 5, **{ROOT + name + ".": 15 for name in SINGLE},
    ROOT + "LANDevice.{i}.": 6, WLAN: 40, WLAN + "Stats.": 10, WLAN + "WPS.": 6,
    ROOT + "LANDevice.{i}.Hosts.": 1, HOST: 14, PORT: 12, PORT + "Stats.": 14,
    ROOT + "WANDevice.{i}.": 11, WAN: 5, IP: 29, IP + "Stats.": 10, IP + "DHCPClient.": 6,
    IP + "PortMapping.{i}.": 11,
    ROOT + "Firewall.": 5, ROOT + "Firewall.Rule.{i}.": 18,
    ROOT + "QueueManagement.": 10, ROOT + "QueueManagement.Queue.{i}.": 8,
    ROOT + "QueueManagement.Classification.{i}.": 5, ROOT + "User.{i}.": 8,
}

INSTANCES = {
    ROOT + "LANDevice.{i}.": 1, WLAN: 8, HOST: 32, PORT: 4, ROOT + "WANDevice.{i}.": 1, WAN: 4,
    IP: 2, IP + "PortMapping.{i}.": 4, ROOT + "Firewall.Rule.{i}.": 40,
    ROOT + "QueueManagement.Queue.{i}.": 32, ROOT + "QueueManagement.Classification.{i}.": 30,
    ROOT + "User.{i}.": 2,
}

WORDS = ("Enable Status Name Alias Address Mask Gateway Mode Type Interval Timeout Limit Rate Priority "
         "Channel Security Key Origin Uptime Error Server Port Protocol Description Lease Source").split()


def parameter_names(count):
    """Distinct names of 4 to 30 characters, as data models have them."""
    names = []
    for i in range(count):
        first, second = WORDS[i % len(WORDS)], WORDS[(i * 7 + 3) % len(WORDS)]
        names.append(first if i < 8 else "%s%s%s" % (first, second, i // len(WORDS) or ""))
    return names


def table_name(path):
    return path[:-len("{i}.")].rstrip(".").rsplit(".", 1)[1]


def parent_of(path):
    plain = path[:-len("{i}.")] if path.endswith("{i}.") else path
    return plain.rstrip(".").rsplit(".", 1)[0] + "."


def model():
    """The objects, each with its parameters (name, writable)."""
    counters = {}
    for path in INSTANCES:
        counters.setdefault(parent_of(path), []).append(table_name(path) + "NumberOfEntries")
    return {path: [(name, i % 5 != 1) for i, name in enumerate(parameter_names(count))]
                  + [(name, False) for name in counters.get(path, [])]
            for path, count in PARAMETERS.items()}


def write_model(out, objects):
    out.write('<dm:document xmlns:dm="urn:broadband-forum-org:cwmp:datamodel-1-5">\n'
              '<model name="Gateway:1.0">\n')
    for path, parameters in objects.items():
        if path in INSTANCES:
            out.write('<object name="%s" access="readWrite" minEntries="0" maxEntries="unbounded" '
                      'numEntriesParameter="%sNumberOfEntries">\n' % (path, table_name(path)))
        else:
            out.write('<object name="%s" access="readOnly" minEntries="1" maxEntries="1">\n' % path)
        for name, writable in parameters:
            out.write('<parameter name="%s" access="%s"><syntax>%s</syntax></parameter>\n'
                      % (name, "readWrite" if writable else "readOnly",
                         "<unsignedInt/>" if name.endswith("NumberOfEntries") else "<string/>"))
        out.write('</object>\n')
    out.write('</model>\n</dm:document>\n')


def expand(path):
    """All objects that a path of the model stands for."""
    at = path.find("{i}.")
    done = 0
    heads = [""]
    while at != -1:
        table = path[:at + len("{i}.")]
        heads = ["%s%s%d." % (head, path[done:at], i + 1)
                 for head in heads for i in range(INSTANCES[table])]
        done = len(table)
        at = path.find("{i}.", done)
    return [head + path[done:] for head in heads]


def random_value(random_source):
    kind = random_source.random()
    if kind < 0.3:
        return random_source.choice(["0", "1"])
    if kind < 0.6:
        return str(random_source.randrange(10 ** random_source.randrange(1, 10)))
    if kind < 0.7:
        return ""
    return "".join(random_source.choice("abcdefghijklmnopqrstuvwxyz0123456789-. ")
                   for _ in range(random_source.randrange(4, 40)))


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    out = Path(sys.argv[1])
    out.mkdir(parents=True, exist_ok=True)
    objects = model()
    random_source = random.Random(7)
    with open(out / "gateway.xml", "w") as model_file:
        write_model(model_file, objects)
    with open(out / "gateway.instances", "w") as instances, \
            open(out / "gateway.values", "w") as values:
        for path, parameters in objects.items():
            for full in expand(path):
                if path in INSTANCES:
                    instances.write(full + "\n")
                for name, _ in parameters:
                    if not name.endswith("NumberOfEntries"):
                        values.write("%s%s=%s\n" % (full, name, random_value(random_source)))


main()

// What a filter costs the device: the memory that compiling it and matching one value takes.
//
// The matcher of glibc turns an expression into one node for each byte that it may read (copies in
// a repetition counted apart) and, while it matches, sets of such nodes into states. It keeps a
// table of 256 pointers for every state that a value passes through. So the estimate follows all
// values at once through these sets and takes the dearest way.
#include "tools/mkstore/filter_cost.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zrcfg::mkstore {

namespace {

constexpr size_t kMaxNodes = 640;                 // More cost too much in any case.
constexpr size_t kMaxStates = 1500;               // Likewise.
constexpr size_t kReserve = kMaxFilterCost / 32;  // For what the estimate does not see.
constexpr size_t kTooMuch = 16 * kMaxFilterCost;

// Measured on glibc 2.36, rounded up.
constexpr size_t kTableBytes = 2064;
constexpr size_t kStateBytes = 176;
constexpr size_t kStateBytesPerNode = 14;
constexpr size_t kEndStateBytes = 240;  // Of a state that may be the end of the value.
constexpr size_t kEndStateBytesPerNode = 20;
constexpr size_t kBaseBytes = 3500;
constexpr size_t kTextBytes = 56;  // For every byte of the text, or every node if there are more.
constexpr size_t kSlotBytes = 16;  // Of a table that is a power of two larger than the text.
constexpr size_t kNodeBytes = 44;
constexpr size_t kSetBytes = 48;
constexpr size_t kBranchBytes = 100;
constexpr size_t kCrossingBytes = 40;
constexpr size_t kLinkBytes = 6;
constexpr size_t kTreeBytes = 165;  // While it is compiled, for every node.
constexpr size_t kTreeBaseBytes = 1100;

// The nodes of the expression, the last of them standing for the end of the value.
using NodeSet = std::bitset<kMaxNodes + 1>;
constexpr size_t kEndNode = kMaxNodes;

struct Nodes {
  std::vector<ByteSet> sets;
  std::vector<NodeSet> follow;
  size_t brackets = 0;   // Nodes that read one byte out of several, copies not counted.
  size_t crossings = 0;  // Optional copies in a row reach each other.
  size_t branches = 0;   // Nodes that read nothing: one for each choice and each optional copy.
  bool overflow = false;
};

// A piece of the expression: the nodes that it can begin and end with.
struct Piece {
  NodeSet first;
  NodeSet last;
  bool empty = true;
};

void connect(Nodes &nodes, const NodeSet &from, const NodeSet &to) {
  for (size_t i = 0; i < nodes.sets.size(); ++i) {
    if (from[i]) {
      nodes.follow[i] |= to;
    }
  }
}

Piece chained(Nodes &nodes, const Piece &left, const Piece &right) {
  connect(nodes, left.last, right.first);
  Piece piece;
  piece.first = left.empty ? left.first | right.first : left.first;
  piece.last = right.empty ? left.last | right.last : right.last;
  piece.empty = left.empty && right.empty;
  return piece;
}

Piece add_piece(Nodes &nodes, const Expression &expression);

Piece add_repeat(Nodes &nodes, const Expression &expression) {
  const bool open = expression.maximum == kUnbounded;
  const size_t copies =
      open ? std::max<size_t>(1, expression.minimum) : std::min(expression.maximum, kMaxNodes + 1);
  const size_t brackets = nodes.brackets;
  Piece whole;
  for (size_t i = 0; i < copies && !nodes.overflow; ++i) {
    Piece copy = add_piece(nodes, expression.parts.front());
    if (open && i + 1 == copies) {
      connect(nodes, copy.last, copy.first);
    }
    copy.empty = copy.empty || i >= expression.minimum;
    whole = chained(nodes, whole, copy);
    nodes.branches += i >= expression.minimum || open ? 1 : 0;
  }
  nodes.brackets = brackets + (nodes.brackets - brackets) / std::max<size_t>(copies, 1);
  const size_t optional_copies = open ? 0 : copies - std::min(copies, expression.minimum);
  nodes.crossings += optional_copies * optional_copies;
  return whole;
}

Piece add_piece(Nodes &nodes, const Expression &expression) {
  Piece piece;
  switch (expression.kind) {
    case Expression::Kind::kSet:
      if (nodes.sets.size() == kMaxNodes) {
        nodes.overflow = true;
        return piece;
      }
      piece.first.set(nodes.sets.size());
      piece.last = piece.first;
      piece.empty = false;
      nodes.sets.push_back(expression.set);
      nodes.brackets += expression.set.count() > 1 ? 1 : 0;
      nodes.follow.emplace_back();
      return piece;
    case Expression::Kind::kSequence:
      for (const Expression &part : expression.parts) {
        piece = chained(nodes, piece, add_piece(nodes, part));
      }
      return piece;
    case Expression::Kind::kAlternatives:
      piece.empty = false;
      nodes.branches += expression.parts.size();
      for (const Expression &part : expression.parts) {
        const Piece one = add_piece(nodes, part);
        piece.first |= one.first;
        piece.last |= one.last;
        piece.empty = piece.empty || one.empty;
      }
      return piece;
    case Expression::Kind::kRepeat:
      return add_repeat(nodes, expression);
  }
  return piece;
}

// One byte for each kind of bytes that all nodes treat alike.
std::vector<uint8_t> distinct_bytes(const Nodes &nodes) {
  std::unordered_map<NodeSet, uint8_t> found;
  std::vector<uint8_t> bytes;
  for (size_t byte = 1; byte < 256; ++byte) {
    NodeSet readers;
    for (size_t i = 0; i < nodes.sets.size(); ++i) {
      readers[i] = nodes.sets[i][byte];
    }
    if (readers.any() && found.emplace(readers, static_cast<uint8_t>(byte)).second) {
      bytes.push_back(static_cast<uint8_t>(byte));
    }
  }
  return bytes;
}

// A state is known by the nodes that may come next.
struct State {
  NodeSet next;
  std::vector<size_t> successors;
  size_t bytes = 0;  // Of the state itself, without its table.
};

// The end of the value is looked for with "$", for which the matcher keeps a state three times:
// behind a letter or digit, behind a line feed, and behind anything else.
size_t state_bytes(const NodeSet &next) {
  const size_t count = next.count();
  return next[kEndNode] ? 3 * (kEndStateBytes + kEndStateBytesPerNode * count)
                        : kStateBytes + kStateBytesPerNode * count;
}

std::vector<size_t> members_of(const NodeSet &set, size_t count) {
  std::vector<size_t> members;
  for (size_t i = 0; i < count; ++i) {
    if (set[i]) {
      members.push_back(i);
    }
  }
  return members;
}

// Fewer than all states when there are more than kMaxStates.
std::vector<State> find_states(const Nodes &nodes, const Piece &whole) {
  const std::vector<uint8_t> bytes = distinct_bytes(nodes);
  std::vector<State> states;
  std::unordered_map<NodeSet, size_t> known;
  const auto state_of = [&](const NodeSet &next) {
    const auto [found, fresh] = known.emplace(next, states.size());
    if (fresh) {
      states.push_back({next, {}, state_bytes(next)});
    }
    return found->second;
  };
  (void)state_of(whole.first | (whole.empty ? NodeSet().set(kEndNode) : NodeSet()));
  for (size_t at = 0; at < states.size() && states.size() <= kMaxStates; ++at) {
    const std::vector<size_t> members = members_of(states[at].next, nodes.sets.size());
    for (const uint8_t byte : bytes) {
      NodeSet next;
      for (const size_t member : members) {
        if (nodes.sets[member][byte]) {
          next |= nodes.follow[member];
        }
      }
      if (next.none()) {
        continue;
      }
      const size_t to = state_of(next);
      std::vector<size_t> &successors = states[at].successors;
      if (std::find(successors.begin(), successors.end(), to) == successors.end()) {
        successors.push_back(to);
      }
    }
  }
  return states;
}

// Finds the loops (strongly connected sets of states), innermost ends first, and the dearest way
// from each of them on. The depth of the recursion is the number of states.
struct Walker {
  const std::vector<State> &states;
  std::vector<size_t> order;  // 0: not yet visited.
  std::vector<size_t> lowest;
  std::vector<size_t> loop;     // The number of the loop plus 1; 0: not yet known.
  std::vector<size_t> dearest;  // By number of the loop.
  std::vector<size_t> open;
  size_t visited = 0;
};

// What passing through all states of a loop costs: their tables, themselves, and every state that
// is one step away. A state before the end of the value is there twice in a loop.
void close_loop(Walker &walker, const std::vector<size_t> &members) {
  size_t cost = 0;
  size_t onward = 0;
  const size_t number = walker.dearest.size() + 1;
  for (const size_t member : members) {
    walker.loop[member] = number;
  }
  std::vector<size_t> near;
  for (const size_t member : members) {
    const State &state = walker.states[member];
    bool in_loop = members.size() > 1;
    for (const size_t next : state.successors) {
      in_loop = in_loop || next == member;
      near.push_back(next);
      if (walker.loop[next] != number) {
        onward = std::max(onward, walker.dearest[walker.loop[next] - 1]);
      }
    }
    cost += kTableBytes * (in_loop && state.next[kEndNode] ? 2 : 1);
  }
  std::sort(near.begin(), near.end());
  near.erase(std::unique(near.begin(), near.end()), near.end());
  for (const size_t next : near) {
    cost += walker.states[next].bytes;
  }
  walker.dearest.push_back(cost + onward);
}

void walk(Walker &walker, size_t at) {
  walker.order[at] = walker.lowest[at] = ++walker.visited;
  walker.open.push_back(at);
  for (const size_t next : walker.states[at].successors) {
    if (walker.order[next] == 0) {
      walk(walker, next);
      walker.lowest[at] = std::min(walker.lowest[at], walker.lowest[next]);
    } else if (walker.loop[next] == 0) {
      walker.lowest[at] = std::min(walker.lowest[at], walker.order[next]);
    }
  }
  if (walker.lowest[at] != walker.order[at]) {
    return;
  }
  std::vector<size_t> members;
  do {
    members.push_back(walker.open.back());
    walker.open.pop_back();
  } while (members.back() != at);
  close_loop(walker, members);
}

size_t matching_cost(const std::vector<State> &states) {
  Walker walker{states, {}, {}, {}, {}, {}, 0};
  walker.order.resize(states.size());
  walker.lowest.resize(states.size());
  walker.loop.resize(states.size());
  walk(walker, 0);
  size_t all = 0;  // Every state is made at most once.
  for (const State &state : states) {
    all += state.bytes + 2 * kTableBytes;
  }
  return std::min(all, walker.dearest[walker.loop[0] - 1]) + 2 * states[0].bytes;
}

// What stays of the compiled expression.
size_t kept_cost(const Nodes &nodes, size_t length) {
  size_t slots = 1;
  while (slots <= length) {
    slots *= 2;
  }
  size_t room = length + 1;
  while (room < nodes.sets.size() + 2 * nodes.branches + 8) {
    room *= 2;
  }
  size_t links = 0;
  for (const NodeSet &follow : nodes.follow) {
    links += follow.count();
  }
  return kBaseBytes + kTextBytes * room + kSlotBytes * slots + kNodeBytes * nodes.sets.size() +
         kSetBytes * nodes.brackets + kBranchBytes * nodes.branches +
         kCrossingBytes * nodes.crossings + kLinkBytes * links;
}

}  // namespace

size_t filter_cost(const Expression &expression) {
  const size_t length = anchored_text(expression).size();
  if (length > kMaxFilterLength) {
    return kTooMuch;
  }
  Nodes nodes;
  const Piece whole = add_piece(nodes, expression);
  if (nodes.overflow) {
    return kTooMuch;
  }
  connect(nodes, whole.last, NodeSet().set(kEndNode));
  const size_t kept = kept_cost(nodes, length);
  const size_t compiling =
      kept + kTreeBaseBytes + kTreeBytes * (nodes.sets.size() + nodes.branches);
  if (compiling > kMaxFilterCost) {
    return compiling;
  }
  const std::vector<State> states = find_states(nodes, whole);
  return states.size() > kMaxStates ? kTooMuch : std::max(compiling, kept + matching_cost(states));
}

bool is_affordable(const Expression &expression) {
  return filter_cost(expression) <= kMaxFilterCost - kReserve;
}

}  // namespace zrcfg::mkstore

# Runs a command for which the system calls that proot does not know do not exist.
#
# proot 5.1 rewrites the paths of the calls that it knows and lets all others through as they are:
# ls (statx), mv (renameat2) and the shell's "test -r" (faccessat2) would see and change the
# machine's own /var. A filter answers these calls with ENOSYS, and the C library then takes the older
# ones. The same holds for all calls numbered from 425 on, where every processor counts alike.
use strict;
use warnings;

my $first_unified_call = 425;
my $enosys             = 38;

# For every processor: its number in the kernel's audit interface, then execveat, renameat2, statx.
my %machines = (
    x86_64  => [ [ 0xC000003E, 322, 316, 332 ], [ 0x40000003, 358, 353, 383 ] ],
    aarch64 => [ [ 0xC00000B7, 281, 276, 291 ], [ 0x40000028, 387, 382, 397 ] ],
);
my %prctl_number = ( x86_64 => 157, aarch64 => 167 );

sub refuse {
    print STDERR "with-store: no private /var: $_[0]\n";
    exit 125;
}

# One instruction of the kernel's packet filter: code, jump if true, jump if false, operand.
sub instruction { return pack( 'SCCL', @_ ); }

my $load         = 0x20;
my $jump_equal   = 0x15;
my $jump_reached = 0x35;
my $return       = 0x06;
my $allowed      = instruction( $return, 0, 0, 0x7FFF0000 );
my $missing      = instruction( $return, 0, 0, 0x00050000 | $enosys );

chomp( my $machine = `uname -m` );
my $kinds = $machines{$machine} or refuse("the proot way is not made for the processor $machine");

my $filter = instruction( $load, 0, 0, 4 );
for my $kind (@$kinds) {
    my ( $audit_number, @calls ) = @$kind;
    my $block = instruction( $load, 0, 0, 0 );
    $block .= instruction( $jump_reached, scalar(@calls) + 1, 0, $first_unified_call );
    for my $i ( 0 .. $#calls ) {
        $block .= instruction( $jump_equal, @calls - $i, 0, $calls[$i] );
    }
    $block .= $allowed . $missing;
    $filter .= instruction( $jump_equal, 0, length($block) / 8, $audit_number ) . $block;
}
$filter .= $missing;

my $program = pack( 'S x![P] P', length($filter) / 8, $filter );
my ( $set_no_new_privs, $set_seccomp, $filter_mode ) = ( 38, 22, 2 );
syscall( $prctl_number{$machine}, $set_no_new_privs, 1, 0, 0, 0 ) == 0
  && syscall( $prctl_number{$machine}, $set_seccomp, $filter_mode, $program, 0, 0 ) == 0
  or refuse("the kernel takes no system call filter ($!)");

{ exec { $ARGV[0] } @ARGV; }
refuse("cannot run $ARGV[0] ($!)");

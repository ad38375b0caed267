"""Addresses that are not random, for Wine: scripts/fixed-addresses.sh says why."""
import ctypes

ADDR_NO_RANDOMIZE = 0x0040000
ASK = 0xffffffff


def fix():
    """For every program that this process starts from now on, and what those start. Says so where it is not allowed."""
    libc = ctypes.CDLL(None)
    if libc.personality(libc.personality(ASK) | ADDR_NO_RANDOMIZE) == -1:
        print('*** Addresses stay random here: once in some thousands Wine does not start a 64-bit program. ***')

#!/usr/bin/env perl
# Tells a registry file's keys and values, one line each; names and data in hexadecimal.
use strict;
use warnings;
use Win::Hivex;
use Encode qw(encode is_utf8);

my $hive = Win::Hivex->open($ARGV[0]);

sub hex_of {
    my ($text) = @_;
    return unpack("H*", is_utf8($text) ? encode("UTF-8", $text) : $text);
}

sub dump_key {
    my ($node, $path) = @_;
    printf "key %s\n", hex_of($path) if $path ne "";
    for my $value ($hive->node_values($node)) {
        my ($type, $data) = $hive->value_value($value);
        printf "value %s %s %u %s\n", hex_of($path), hex_of($hive->value_key($value)), $type & 0xFFFFFFFF, unpack("H*", $data);
    }
    for my $child ($hive->node_children($node)) {
        my $name = $hive->node_name($child);
        dump_key($child, $path eq "" ? $name : "$path\\$name");
    }
}

dump_key($hive->root(), "");

"""Drives the built program in throw-away Wine prefixes."""

"""Small faults put into the product, to see whether a test notices (scripts/mutate.py)."""

"""One mutant after the other held against the stages of the suite, quickest first."""
import re
import time

DOCTEST_BLOCK = re.compile(r'^=+$', re.M)
DOCTEST_CASE = re.compile(r'^TEST CASE:\s*(.*)$', re.M)
FAILED_CASE = re.compile(r'^\s*(?:FAIL|ERROR) +(\S.*)$', re.M)


def failing_test(output):
    """The name of what failed, as far as the output tells it."""
    # A case that only tells something has a block as well.
    failed = ''.join(block for block in DOCTEST_BLOCK.split(output) if 'ERROR' in block)
    found = DOCTEST_CASE.search(failed) or FAILED_CASE.search(output)
    return found[1].strip() if found else output.strip().rsplit('\n', 1)[-1][:100]


def held(mutant, stages):
    """(outcome, stage, test). A stage has build() -> bool, changed() -> bool and run(mutant) -> Ran or None for nothing to run.

    A stage whose programs are, byte for byte, those without the mutant cannot see it; and a mutant that no program shows
    is the same program.
    """
    seen = False
    for stage in stages:
        if not stage.build():
            return 'not compiled', stage.name, ''
        if not stage.changed():
            continue
        seen = True
        ran = stage.run(mutant)
        if ran is None or ran.code == 0:
            continue
        return ('timeout', stage.name, '') if ran.code is None else ('killed', stage.name, failing_test(ran.output))
    return ('survived' if seen else 'same program'), '', ''


def tried(mutant, tree, stages):
    """Puts the mutant into the tree, holds it and puts the source back; gives what held() gives, and the seconds."""
    began = time.monotonic()
    tree.put(mutant)
    try:
        return (*held(mutant, stages), time.monotonic() - began)
    finally:
        tree.put_back()

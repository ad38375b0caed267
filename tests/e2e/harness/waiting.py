"""Waiting for a condition: no test sleeps for a time that somebody guessed."""
import time

PATIENCE = 120  # seconds, which only a failure waits for; a loaded machine with several Wine sessions is slow


class TimedOut(AssertionError):
    pass


def wait_for(condition, what, patience=PATIENCE, pause=0.03):
    """Asks again and again until `condition()` is true, and gives its answer back."""
    end = time.monotonic() + patience
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise TimedOut(f'waited {patience} s in vain for {what}')
        time.sleep(pause)

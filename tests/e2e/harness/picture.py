"""What is on the screen, pixel by pixel."""
import subprocess


class Picture:
    """A photograph of the whole screen, in Windows' coordinates."""

    def __init__(self, environment):
        data = subprocess.run(['import', '-window', 'root', '-depth', '8', 'ppm:-'], check=True, capture_output=True,
                              env=environment).stdout
        kind, size, depth, self.pixels = data.split(b'\n', 3)
        assert (kind, depth) == (b'P6', b'255'), data[:20]
        self.width = int(size.split()[0])

    def _columns(self, place, is_ink):
        """The positions at which a rectangle holds ink."""
        left, top, right, bottom = place
        for x in range(left, right):
            for y in range(top, bottom):
                at = 3 * (y * self.width + x)
                if is_ink(*self.pixels[at:at + 3]):
                    yield x
                    break

    def ink(self, place):
        """The colours of the text in a rectangle; letters with smooth edges have their full colour inside."""
        colours = {'red': lambda red, green, blue: red > 200 and green < 100 and blue < 100,
                   'black': lambda red, green, blue: max(red, green, blue) < 110}
        return {name for name, is_ink in colours.items() if any(True for _ in self._columns(place, is_ink))}

    def ink_width(self, place):
        """From the first to the last trace of a text on a white ground."""
        columns = list(self._columns(place, lambda red, green, blue: min(red, green, blue) < 200))
        return columns[-1] - columns[0] + 1 if columns else 0

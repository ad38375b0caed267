"""C++ as a sequence of tokens, as far as the operators need it. Comments and preprocessor lines are no tokens."""
import re
from typing import NamedTuple

PATTERN = re.compile(r'''
    (?P<skipped>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*)
  | (?P<string>(?:u8|[LuU])?(?:R"(?P<mark>[^()\s]*)\(.*?\)(?P=mark)"|"(?:[^"\\\n]|\\.)*"))
  | (?P<character>[LuU]?'(?:[^'\\\n]|\\.)+')
  | (?P<number>(?:0[xX][0-9a-fA-F']+|[0-9][0-9']*(?:\.[0-9]+)?)[uUlLfF]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<sign><=>|->\*|<<=|>>=|\.\.\.|::|->|\+\+|--|&&|\|\||[=!<>+\-*/%&|^]=|<<|>>|.)
''', re.X | re.S | re.M)

CLOSING = {'(': ')', '[': ']', '{': '}'}


class Token(NamedTuple):
    kind: str
    text: str
    start: int
    end: int


def tokens_of(text):
    return [Token(found.lastgroup if found.lastgroup != 'mark' else 'string', found[0], found.start(), found.end())
            for found in PATTERN.finditer(text) if found.lastgroup != 'skipped']


def partners(tokens):
    """Position of each opening bracket to that of its closing one, and back."""
    found, open_ones = {}, []
    for at, token in enumerate(tokens):
        if token.text in CLOSING:
            open_ones.append(at)
        elif token.text in CLOSING.values() and open_ones:
            begin = open_ones.pop()
            found[begin], found[at] = at, begin
    return found


def split_at_commas(tokens, partner, begin, end):
    """The ranges between the commas of tokens[begin:end], without those inside brackets."""
    pieces, first, at = [], begin, begin
    while at < end:
        if tokens[at].text in CLOSING and at in partner:
            at = partner[at]
        elif tokens[at].text == ',':
            pieces.append((first, at))
            first = at + 1
        at += 1
    return [*pieces, (first, end)] if first < end else pieces

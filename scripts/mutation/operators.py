"""What is done to the product: each operator gives the replacements (start, end, text) that it finds in a source.

They lean on the formatting of the tree: a relation has blanks around it, the bracket of a template argument has none.
"""
import re

from .tokens import partners, split_at_commas, tokens_of

RELATIONS = {'==': ['!='], '!=': ['=='], '<': ['<=', '>='], '>': ['>=', '<='], '<=': ['<', '>'], '>=': ['>', '<']}
ARITHMETIC = {'&&': '||', '||': '&&', '+': '-', '-': '+', '*': '/', '/': '*', '%': '/', '|': '&', '&': '|', '<<': '>>',
              '>>': '<<', '+=': '-=', '-=': '+=', '|=': '&=', '&=': '|='}
STEPS = {'++': '--', '--': '++'}
# What ends an operand of each, from either side.
OPERAND_ENDS = {'&&': {'&&', '||', ',', ';', '?', ':', '=', '&=', '|=', 'return'}, '||': {'||', ',', ';', '?', ':', '=', '&=', '|=', 'return'}}
NO_CALLS = {'if', 'while', 'for', 'switch', 'return', 'sizeof', 'catch', 'static_assert', 'decltype', 'alignof', 'noexcept',
            'defined', 'operator', 'explicit', 'throw'}
NO_STATEMENTS = {'using', 'typedef', 'struct', 'class', 'enum', 'union', 'static', 'const', 'constexpr', 'auto', 'case',
                 'default', 'public', 'private', 'protected', 'namespace', 'template', 'extern', 'friend', 'virtual', 'explicit',
                 'inline', 'else', 'if', 'for', 'while', 'do', 'switch', 'goto', 'try', 'static_assert', 'mutable', 'return'}
DECLARATION = re.compile(r'(?!throw\b|delete\b)[\w:]+(<.*>)?(\s+|\s*[&*]+\s*)[A-Za-z_]\w*\s*(=[^=]|\(|;|\{|\[)', re.S)


class Source:
    def __init__(self, text):
        self.text = text
        self.tokens = tokens_of(text)
        self.partner = partners(self.tokens)

    def between(self, begin, end):
        """The text of tokens[begin:end]."""
        return self.text[self.tokens[begin].start:self.tokens[end - 1].end]

    def replace(self, begin, end, text):
        return self.tokens[begin].start, self.tokens[end - 1].end, text

    def has_blanks(self, at):
        token = self.tokens[at]
        return self.text[token.start - 1:token.start].isspace() and self.text[token.end:token.end + 1].isspace()

    def before(self, at):
        return self.tokens[at - 1].text if at else ''

    def promises(self):
        """Where what is written only lets the compiler refuse: whatever compiles is the same program without it."""
        for at, token in enumerate(self.tokens):
            if token.text == 'static_assert' and at + 1 in self.partner:
                yield token.start, self.tokens[self.partner[at + 1]].end
            elif token.text == 'delete' and self.before(at) == '=':
                begin = at
                while self.before(begin) not in ('', ';', '{', '}', ':'):
                    begin -= 1
                yield self.tokens[begin].start, token.end


def relations(source):
    for at, token in enumerate(source.tokens):
        if source.has_blanks(at) and source.before(at) != 'operator':
            for other in RELATIONS.get(token.text, []):
                yield source.replace(at, at + 1, other)


def arithmetic(source):
    for at, token in enumerate(source.tokens):
        if token.text in ARITHMETIC and source.has_blanks(at):
            # Texts are put together with "+" and never taken apart.
            if not (token.text == '+' and 'string' in (source.tokens[at - 1].kind, source.tokens[at + 1].kind)):
                yield source.replace(at, at + 1, ARITHMETIC[token.text])
        elif token.text in STEPS:
            yield source.replace(at, at + 1, STEPS[token.text])


def negations(source):
    for at, token in enumerate(source.tokens):
        if token.text == '!':
            yield source.replace(at, at + 1, '')


def other_number(text):
    digits, suffix = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[0-9][0-9']*)([uUlL]*)", text).groups()
    value = int(digits.replace("'", ''), 0 if digits.lower().startswith('0x') else 10)
    changed = 0 if value == 1 else value + 1
    return (hex(changed) if digits.lower().startswith('0x') else str(changed)) + suffix


def constants(source):
    for at, token in enumerate(source.tokens):
        if source.before(at) in ('extern', 'static_assert'):
            continue
        if token.kind == 'number' and re.fullmatch(r"(0[xX][0-9a-fA-F']+|[0-9][0-9']*)[uUlL]*", token.text):
            yield source.replace(at, at + 1, other_number(token.text))
        elif token.text in ('true', 'false'):
            yield source.replace(at, at + 1, 'false' if token.text == 'true' else 'true')
        elif token.kind == 'character':
            yield source.replace(at, at + 1, re.sub(r"'.*'", "'~'" if "'~'" not in token.text else "'x'", token.text))
        elif token.kind == 'string' and 'R"' not in token.text:
            prefix, content = token.text[:-1].split('"', 1)
            yield source.replace(at, at + 1, f'{prefix}"{content}~"')
            if content:
                yield source.replace(at, at + 1, prefix + '""')


def conditions(source):
    for at, token in enumerate(source.tokens):
        if token.text in ('if', 'while') and at + 1 in source.partner and source.tokens[at + 1].text == '(':
            begin, end = at + 2, source.partner[at + 1]
            inside = source.tokens[begin:end]
            # A condition that declares something is needed below.
            if any(part.text in (';', '=') for part in inside):
                continue
            yield source.replace(begin, end, 'false')
            if token.text == 'if':
                yield source.replace(begin, end, 'true')


def operands(source):
    """Of two conditions one is left out."""
    for at, token in enumerate(source.tokens):
        if token.text in OPERAND_ENDS and source.has_blanks(at):
            begin, end = start_of(source, at, OPERAND_ENDS[token.text]), end_of(source, at + 1, OPERAND_ENDS[token.text])
            yield source.tokens[begin].start, source.tokens[at + 1].start, ''
            yield source.tokens[at - 1].end, source.tokens[end - 1].end, ''


def choices(source):
    """The two answers of `condition ? one : other` change places."""
    for at, token in enumerate(source.tokens):
        if token.text != '?':
            continue
        colon = end_of(source, at + 1, {':', '?', ';'})
        if source.tokens[colon].text == ':':
            end = end_of(source, colon + 1, {',', ';', '?', ':'})
            if end > colon + 1:
                yield source.replace(at + 1, end, f'{source.between(colon + 1, end)} : {source.between(at + 1, colon)}')


def end_of(source, at, stops):
    """The first of `stops` outside brackets, or the bracket that closes around."""
    while at < len(source.tokens) - 1:
        text = source.tokens[at].text
        if text in stops or text in (')', ']', '}'):
            return at
        at = source.partner.get(at, at) + 1
    return min(at, len(source.tokens) - 1)


def start_of(source, at, stops):
    """Behind the last of `stops` before `at`, outside brackets, or behind the bracket that opens around."""
    while at > 0:
        text = source.before(at)
        if text in stops or text in ('(', '[', '{', '}'):
            return at
        at = source.partner.get(at - 1, at - 1)
    return at


def is_declared(source, begin, end):
    """`Type name`: a parameter, not an argument."""
    kinds = [source.tokens[at].kind for at in range(begin, end)]
    texts = [source.tokens[at].text for at in range(begin, end)]
    return any(kinds[i] == 'word' and (kinds[i + 1] == 'word' or texts[i + 1] in ('&', '*', '>') and texts[i + 1:i + 2] and
               i + 2 < len(kinds) and kinds[i + 2] == 'word' and not source.has_blanks(begin + i + 1))
               for i in range(len(kinds) - 1) if texts[i] not in ('new', 'sizeof', 'const'))


def arguments(source):
    for at in range(1, len(source.tokens)):
        name = source.tokens[at - 1]
        if source.tokens[at].text != '(' or name.kind != 'word' or name.text in NO_CALLS or at not in source.partner:
            continue
        pieces = split_at_commas(source.tokens, source.partner, at + 1, source.partner[at])
        if any(is_declared(source, *piece) for piece in pieces):
            continue
        for (begin, middle), (following, end) in zip(pieces, pieces[1:]):
            one, other = source.between(begin, middle), source.between(following, end)
            if one != other:
                yield source.replace(begin, end, f'{other}, {one}')
        if len(pieces) > 1:
            yield source.replace(pieces[-2][1], pieces[-1][1], '')


def begins_statement(source, at):
    if source.before(at) == ')':
        opening = source.partner.get(at - 1, 0)
        return source.before(opening) in ('if', 'while', 'for')
    return source.before(at) in (';', '{', '}', 'else')


def statements(source):
    """Each is taken away, but for declarations and what carries a block."""
    for at, token in enumerate(source.tokens):
        if not begins_statement(source, at):
            continue
        if token.kind not in ('word', 'sign') or token.text in NO_STATEMENTS or token.text in '{}();,.:?[]=':
            continue
        end = end_of(source, at, {';'})
        text = source.text[token.start:source.tokens[end].end]
        if source.tokens[end].text == ';' and ('(' in text or '=' in text or token.text in ('break', 'continue')) \
                and not DECLARATION.match(text):
            # Where it is all that a condition commands, nothing must not become the next statement.
            yield token.start, source.tokens[end].end, ';' if source.before(at) in (')', 'else') else ''


def rows(source):
    """Two neighbours of a table change places, or one is left out."""
    for at in range(1, len(source.tokens)):
        if source.tokens[at].text != '{' or source.before(at) not in ('{', ','):
            continue
        end = source.partner.get(at, at) + 1
        if source.tokens[end:end + 1] and source.tokens[end].text == ',':
            yield source.replace(at, end + 1, '')
            following = end + 1
            if following in source.partner and source.tokens[following].text == '{':
                last = source.partner[following] + 1
                one, other = source.between(at, end), source.between(following, last)
                if one != other:
                    yield source.replace(at, last, f'{other}, {one}')


OPERATORS = {'relation': relations, 'arithmetic': arithmetic, 'negation': negations, 'constant': constants,
             'condition': conditions, 'operand': operands, 'choice': choices, 'argument': arguments, 'statement': statements, 'row': rows}

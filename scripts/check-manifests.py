#!/usr/bin/env python3
"""Holds the resources of finished programs against what Windows wants of them and Wine does not mind.

    scripts/check-manifests.py FOLDER...     every .exe and .dll there

docs/windows-versions.md tells the reasons ("What Wine forgives and Windows does not").
"""
import re
import struct
import sys
from pathlib import Path
from xml.dom import minidom

MANIFEST, VERSION = 24, 16
MACHINES = {0x14C: 'x86', 0x8664: 'amd64'}
LANGUAGES = {0, 0x409}  # neutral, English (United States): the two that every user's search comes to


class Resources:
    """The resources of a program file: (type, name, language) to bytes; numbers or texts as they stand."""

    def __init__(self, path):
        self.data = path.read_bytes()
        header = self.number(0x3C)
        self.machine = MACHINES[self.number(header + 4, '<H')]
        optional = header + 24
        directories = optional + (112 if self.number(optional, '<H') == 0x20B else 96)
        first = optional + self.number(header + 20, '<H')
        self.sections = [struct.unpack_from('<III', self.data, first + 40 * section + 12)
                         for section in range(self.number(header + 6, '<H'))]
        address = self.number(directories + 8 * 2)
        self.root = self.offset(address) if address else None
        self.found = dict(self.walk(self.root, ())) if address else {}

    def number(self, at, form='<I'):
        return struct.unpack_from(form, self.data, at)[0]

    def offset(self, address):
        return next(address - start + position for start, size, position in self.sections if start <= address < start + size)

    def name(self, value):
        if not value & 0x80000000:
            return value
        at = self.root + (value & 0x7FFFFFFF)
        return self.data[at + 2:at + 2 + 2 * self.number(at, '<H')].decode('utf-16-le')

    def walk(self, directory, path):
        count = self.number(directory + 12, '<H') + self.number(directory + 14, '<H')
        for entry in range(count):
            value, below = struct.unpack_from('<II', self.data, directory + 16 + 8 * entry)
            here = (*path, self.name(value))
            if below & 0x80000000:
                yield from self.walk(self.root + (below & 0x7FFFFFFF), here)
            else:
                address, size = struct.unpack_from('<II', self.data, self.root + below)
                at = self.offset(address)
                yield here, self.data[at:at + size]


def elements(node):
    for child in node.childNodes:
        if child.nodeType == child.ELEMENT_NODE:
            yield child
            yield from elements(child)


def manifest_faults(text, machine):
    document = minidom.parseString(text)
    for element in elements(document):
        declared = [name for name in element.attributes.keys() if re.match('xmlns(:|$)', name)]
        if len(declared) > 1:
            yield f'<{element.tagName}> declares {len(declared)} namespaces'
    root = document.documentElement
    identity = next((child for child in root.childNodes if child.nodeName == 'assemblyIdentity'), None)
    told = identity.getAttribute('processorArchitecture') if identity else 'nothing'
    if told != machine:
        yield f'the root identity says {told}, the file is {machine}'
    for child in root.childNodes:
        if child.nodeName in ('trustInfo', 'application', 'compatibility') and not child.getAttribute('xmlns'):
            yield f'<{child.nodeName}> without its namespace'


def faults(path):
    resources = Resources(path)
    kinds = {kind for kind, _, _ in resources.found}
    if VERSION not in kinds:
        yield 'no version resource'
    if path.name == 'Quillon.exe' and MANIFEST not in kinds:
        yield 'no manifest'
    for (kind, name, language), data in resources.found.items():
        if language not in LANGUAGES:
            yield f'resource {kind}/{name} is of language {language:#x} alone'
        if kind == MANIFEST:
            yield from manifest_faults(data, resources.machine)


def main(folders):
    files = [file for folder in folders for file in sorted(Path(folder).iterdir()) if file.suffix in ('.exe', '.dll')]
    wrong = [f'{file}: {fault}' for file in files for fault in faults(file)]
    print('\n'.join(wrong) if wrong else f'{len(files)} files looked at')
    return 1 if wrong or not files else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))

"""Changes to a 32-bit program file in place: other libraries to import from, no manifest."""
import struct

IMPORTS, RESOURCES = 1, 2
MANIFEST, NO_TYPE = 24, 0x7FFF  # resource types


class Image:
    def __init__(self, data):
        self.data = bytearray(data)
        header = self._number(0x3C)
        assert self.data[header:header + 4] == b'PE\0\0', 'no program file'
        sections, optional_size = self._number(header + 6, '<H'), self._number(header + 20, '<H')
        optional = header + 24
        assert self._number(optional, '<H') == 0x10B, 'no 32-bit program'
        self.directories = [struct.unpack_from('<II', self.data, optional + 96 + 8 * entry) for entry in range(16)]
        self.size = self._number(optional + 56)
        self.sections = [struct.unpack_from('<IIII', self.data, optional + optional_size + 40 * section + 8)
                         for section in range(sections)]

    def _number(self, offset, form='<I'):
        return struct.unpack_from(form, self.data, offset)[0]

    def _offset(self, address):
        for size, start, _, position in self.sections:
            if start <= address < start + size:
                return address - start + position
        raise ValueError(f'no section holds {address:#x}')

    def import_from(self, other_name):
        """Each imported library's name is replaced by `other_name(name)`, which may not be longer."""
        descriptor = self._offset(self.directories[IMPORTS][0])
        while name_address := self._number(descriptor + 12):
            at = self._offset(name_address)
            name = bytes(self.data[at:self.data.index(0, at)]).decode().lower()
            replaced = other_name(name).encode()
            assert len(replaced) <= len(name), replaced
            self.data[at:at + len(name)] = replaced.ljust(len(name), b'\0')
            descriptor += 20

    def drop_manifest(self):
        """Its resource gets a type that nobody asks for. Types stand in ascending order: it must be the last."""
        address, _ = self.directories[RESOURCES]
        if not address:
            return
        directory = self._offset(address)
        named, numbered = self._number(directory + 12, '<H'), self._number(directory + 14, '<H')
        for entry in range(named, named + numbered):
            at = directory + 16 + 8 * entry
            if self._number(at) == MANIFEST:
                assert entry == named + numbered - 1
                struct.pack_into('<I', self.data, at, NO_TYPE)

"""Programs that the menus start, for real."""
from harness import paths
from harness.case import Case
from harness.waiting import wait_for

TOOLS = 'C:\\My Tools'


def starts(folder):
    """How often a copy of Quillon began in this folder, which its log tells."""
    log = folder / 'QLN.log'
    return log.read_text(encoding='utf-8').count('********** start app') if log.is_file() else 0


class ToolsMenu(Case):
    def install_tool(self, end):
        """A copy of Quillon plays the tool: its log shows that it was started."""
        folder = self.prefix.put_program(TOOLS, self.architecture)
        self.prefix.put(TOOLS + '\\Teselin.exe', paths.program_folder(self.architecture) / 'Quillon.exe')
        self.probe.set_value('HKLM', 'SOFTWARE\\Mardelix\\Teselin', 'InstallPath', TOOLS + end)
        return folder

    def start_tool(self, folder, times):
        self.program.choose('t', 'm', 't')
        wait_for(lambda: starts(folder) == times, 'the tool to start')
        self.assertTrue(self.program.no_dialog())

    def test_an_installed_tool_is_started(self):
        folder = self.install_tool('')
        self.start()
        self.start_tool(folder, 1)

    def test_its_path_may_end_in_a_backslash(self):
        folder = self.install_tool('\\')
        self.start()
        self.start_tool(folder, 1)

    def test_no_other_explorer_is_started(self):
        """A file named explorer.exe beside the program, in its current folder, is not the one it means."""
        decoy = paths.program_folder(self.architecture) / 'Quillon.exe'
        self.prefix.put('C:\\Quillon\\explorer.exe', decoy)
        folder = self.install_tool('')
        self.start()
        self.program.choose('h', 'h')
        # The tool takes as long to start as the decoy would have taken.
        self.settle()
        self.start_tool(folder, 1)
        self.assertEqual(starts(self.folder), 1)

// The known-good image paths against a copy of the list that the test carries itself.
#include <doctest/doctest.h>

#include "startup/known_good_image_paths.h"
#include "startup/ucServices.h"
#include "tests/support/text.h"
#include "win32/base/text.h"

namespace {

// clang-format off
const wchar_t* const entries[] = {
    LR"(%systemroot%\microsoft.net\framework\v1.1.4322\aspnet_state.exe)",
    LR"(%systemroot%\system32\clipsrv.exe)",
    LR"(%systemroot%\system32\dfssvc.exe)",
    LR"(%systemroot%\system32\faxsvc.exe)",
    LR"(%systemroot%\system32\hidserv.exe)",
    LR"(%systemroot%\system32\ismserv.exe)",
    LR"(%systemroot%\system32\llssrv.exe)",
    LR"(%systemroot%\system32\locator.exe)",
    LR"(%systemroot%\system32\lsass.exe)",
    LR"(%systemroot%\system32\mstask.exe)",
    LR"(%systemroot%\system32\netdde.exe)",
    LR"(%systemroot%\system32\ntfrs.exe)",
    LR"(%systemroot%\system32\regsvc.exe)",
    LR"(%systemroot%\system32\rsvp.exe -s)",
    LR"(%systemroot%\system32\scardsvr.exe)",
    LR"(%systemroot%\system32\services.exe)",
    LR"(%systemroot%\system32\smlogsvc.exe)",
    LR"(%systemroot%\system32\snmp.exe)",
    LR"(%systemroot%\system32\snmptrap.exe)",
    LR"(%systemroot%\system32\spoolsv.exe)",
    LR"(%systemroot%\system32\stisvc.exe)",
    LR"(%systemroot%\system32\svchost.exe -k bitsgroup)",
    LR"(%systemroot%\system32\svchost.exe -k netsvcs)",
    LR"(%systemroot%\system32\svchost.exe -k tapisrv)",
    LR"(%systemroot%\system32\svchost.exe -k wugroup)",
    LR"(%systemroot%\system32\tcpsvcs.exe)",
    LR"(%systemroot%\system32\termsrv.exe)",
    LR"(%systemroot%\system32\tlntsvr.exe)",
    LR"(%systemroot%\system32\ups.exe)",
    LR"(%systemroot%\system32\utilman.exe)",
    LR"(%systemroot%\system32\wbem\winmgmt.exe)",
    LR"(\systemroot\system32\drivers\afd.sys)",
    LR"(\systemroot\system32\drivers\netdtect.sys)",
    LR"(\systemroot\system32\drivers\spud.sys)",
    LR"(\systemroot\system32\drivers\termdd.sys)",
    LR"(\systemroot\system32\drivers\vga.sys)",
    LR"(\systemroot\system32\drivers\ws2ifsl.sys)",
    LR"(c:\program files\common files\microsoft shared\vs7debug\mdm.exe)",
    LR"(c:\program files\microsoft visual studio .net 2003\common7\packages\debugger\dbgproxy.exe)",
    LR"(c:\program files\microsoft visual studio\common\tools\vs-ent98\vanalyzr\varpc.exe)",
    LR"(c:\winnt\system32\cisvc.exe)",
    LR"(c:\winnt\system32\inetsrv\inetinfo.exe)",
    LR"(c:\winnt\system32\mnmsrvc.exe)",
    LR"(c:\winnt\system32\msdtc.exe)",
    LR"(c:\winnt\system32\msiexec.exe /v)",
    LR"(c:\winnt\system32\svchost.exe -k netsvcs)",
    LR"(system32\drivers\acpi.sys)",
    LR"(system32\drivers\asyncmac.sys)",
    LR"(system32\drivers\atapi.sys)",
    LR"(system32\drivers\atmarpc.sys)",
    LR"(system32\drivers\audstub.sys)",
    LR"(system32\drivers\ccdecode.sys)",
    LR"(system32\drivers\cdrom.sys)",
    LR"(system32\drivers\dfs.sys)",
    LR"(system32\drivers\disk.sys)",
    LR"(system32\drivers\dmusic.sys)",
    LR"(system32\drivers\fdc.sys)",
    LR"(system32\drivers\flpydisk.sys)",
    LR"(system32\drivers\ftdisk.sys)",
    LR"(system32\drivers\gameenum.sys)",
    LR"(system32\drivers\hidusb.sys)",
    LR"(system32\drivers\i8042prt.sys)",
    LR"(system32\drivers\ipfltdrv.sys)",
    LR"(system32\drivers\ipinip.sys)",
    LR"(system32\drivers\ipnat.sys)",
    LR"(system32\drivers\ipsec.sys)",
    LR"(system32\drivers\irda.sys)",
    LR"(system32\drivers\irenum.sys)",
    LR"(system32\drivers\isapnp.sys)",
    LR"(system32\drivers\kbdclass.sys)",
    LR"(system32\drivers\kmixer.sys)",
    LR"(system32\drivers\mouclass.sys)",
    LR"(system32\drivers\mouhid.sys)",
    LR"(system32\drivers\mpe.sys)",
    LR"(system32\drivers\mrxsmb.sys)",
    LR"(system32\drivers\msgpc.sys)",
    LR"(system32\drivers\mskssrv.sys)",
    LR"(system32\drivers\msmpu401.sys)",
    LR"(system32\drivers\mspclock.sys)",
    LR"(system32\drivers\mspqm.sys)",
    LR"(system32\drivers\mstee.sys)",
    LR"(system32\drivers\nabtsfec.sys)",
    LR"(system32\drivers\ndistapi.sys)",
    LR"(system32\drivers\ndisuio.sys)",
    LR"(system32\drivers\ndiswan.sys)",
    LR"(system32\drivers\netbios.sys)",
    LR"(system32\drivers\netbt.sys)",
    LR"(system32\drivers\nmnt.sys)",
    LR"(system32\drivers\nwlnkflt.sys)",
    LR"(system32\drivers\nwlnkfwd.sys)",
    LR"(system32\drivers\openhci.sys)",
    LR"(system32\drivers\parallel.sys)",
    LR"(system32\drivers\parport.sys)",
    LR"(system32\drivers\pci.sys)",
    LR"(system32\drivers\pciide.sys)",
    LR"(system32\drivers\rasacd.sys)",
    LR"(system32\drivers\rasirda.sys)",
    LR"(system32\drivers\rasl2tp.sys)",
    LR"(system32\drivers\raspptp.sys)",
    LR"(system32\drivers\raspti.sys)",
    LR"(system32\drivers\rca.sys)",
    LR"(system32\drivers\rdbss.sys)",
    LR"(system32\drivers\redbook.sys)",
    LR"(system32\drivers\rootmdm.sys)",
    LR"(system32\drivers\serenum.sys)",
    LR"(system32\drivers\serial.sys)",
    LR"(system32\drivers\sermouse.sys)",
    LR"(system32\drivers\slip.sys)",
    LR"(system32\drivers\srv.sys)",
    LR"(system32\drivers\streamip.sys)",
    LR"(system32\drivers\swenum.sys)",
    LR"(system32\drivers\swmidi.sys)",
    LR"(system32\drivers\sysaudio.sys)",
    LR"(system32\drivers\tcpip.sys)",
    LR"(system32\drivers\update.sys)",
    LR"(system32\drivers\usbhub.sys)",
    LR"(system32\drivers\usbscan.sys)",
    LR"(system32\drivers\usbstor.sys)",
    LR"(system32\drivers\wanarp.sys)",
    LR"(system32\drivers\wdmaud.sys)",
    LR"(system32\drivers\wstcodec.sys)",
    LR"("c:\program files\common files\microsoft shared\vs7debug\mdm.exe")",
    LR"(%systemroot%\system32\svchost -k rpcss)",
    LR"(%systemroot%\system32\svchost.exe -k localservice)",
    LR"(%systemroot%\system32\alg.exe)",
    LR"(c:\windows\system32\cisvc.exe)",
    LR"(c:\windows\system32\dllhost.exe /processid:{02d4b3f1-fd88-11d1-960d-00805fc79235})",
    LR"(%systemroot%\system32\dmadmin.exe /com)",
    LR"(system32\drivers\dmboot.sys)",
    LR"(system32\drivers\dmio.sys)",
    LR"(system32\drivers\dmload.sys)",
    LR"(%systemroot%\system32\svchost.exe -k networkservice)",
    LR"(c:\windows\system32\svchost.exe -k netsvcs)",
    LR"(c:\windows\system32\imapi.exe)",
    LR"(system32\drivers\intelide.sys)",
    LR"(c:\windows\system32\mnmsrvc.exe)",
    LR"(system32\drivers\mrxdav.sys)",
    LR"(c:\windows\system32\msdtc.exe)",
    LR"(c:\windows\system32\msiexec.exe /v)",
    LR"(system32\drivers\ntapm.sys)",
    LR"(system32\drivers\psched.sys)",
    LR"(system32\drivers\raspppoe.sys)",
    LR"(system32\drivers\rdpcdd.sys)",
    LR"(system32\drivers\rdpdr.sys)",
    LR"(c:\windows\system32\sessmgr.exe)",
    LR"(%systemroot%\system32\rsvp.exe)",
    LR"(system32\drivers\sr.sys)",
    LR"(%systemroot%\system32\svchost.exe -k imgsvc)",
    LR"(c:\windows\system32\dllhost.exe /processid:{70f04965-aa86-4108-99b6-4f4a1d6d44b5})",
    LR"(system32\drivers\termdd.sys)",
    LR"(c:\windows\system32\tlntsvr.exe)",
    LR"(system32\drivers\usbuhci.sys)",
    LR"(%systemroot%\system32\vssvc.exe)",
    LR"(c:\windows\system32\wbem\wmiapsrv.exe)",
};
// clang-format on

std::wstring withVariableExpanded(const std::wstring& entry, const std::wstring& folder) {
    const std::wstring variable = L"%systemroot%", object = L"\\systemroot";
    for (const std::wstring& name : {variable, object}) {
        if (entry.compare(0, name.size(), name) == 0) return folder + entry.substr(name.size());
    }
    return entry;
}

}  // namespace

TEST_CASE("all 154 known-good image paths are known, in any letter case") {
    CHECK(std::size(entries) == 154);
    for (const std::wstring entry : entries) {
        CHECK_MESSAGE(startup::IsKnownGoodImagePath(entry), win32::toUtf8(entry));
        std::wstring upper = entry;
        for (wchar_t& c : upper) c = c >= L'a' && c <= L'z' ? c - 32 : c;
        CHECK_MESSAGE(startup::IsKnownGoodImagePath(upper), win32::toUtf8(entry));
    }
}

TEST_CASE("a near miss of every known-good image path is not known") {
    for (const std::wstring entry : entries) {
        CHECK_FALSE_MESSAGE(startup::IsKnownGoodImagePath(entry + L" "), win32::toUtf8(entry));
        CHECK_FALSE_MESSAGE(startup::IsKnownGoodImagePath(L" " + entry), win32::toUtf8(entry));
        if (size_t blank = entry.find(L' '); blank != std::wstring::npos) {
            std::wstring wider = entry;
            wider.insert(blank, L" ");
            CHECK_FALSE_MESSAGE(startup::IsKnownGoodImagePath(wider), win32::toUtf8(entry));
        }
        // A folder that stands in no entry: the list knows C:\WINNT and C:\WINDOWS.
        const std::wstring expanded = withVariableExpanded(entry, L"d:\\winxp");
        if (expanded != entry)
            CHECK_FALSE_MESSAGE(startup::IsKnownGoodImagePath(expanded), win32::toUtf8(entry));
    }
}

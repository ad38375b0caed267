# What every Windows target shares: a static runtime, no unused code, and where the finished programs go.
add_compile_options(-ffunction-sections -fdata-sections)
# For every source alike, since the standard headers include Windows' own. Those of GCC 13 and later have a condition
# variable in them, which they can only compile for Windows Vista; nobody uses it.
add_compile_definitions(_WIN32_WINNT=0x0600 WIN32_LEAN_AND_MEAN NOMINMAX)
# The same sources give the same bytes: no time of building in the files (scripts/reproducible.sh).
add_link_options(-static -Wl,--gc-sections -Wl,--no-insert-timestamp)
# On a terminal server no compatibility layer, which would turn the ini files and the Windows folder into the user's own.
add_link_options(-Wl,--tsaware)
# Release folders carry no symbols.
add_link_options($<$<CONFIG:MinSizeRel>:-s>)

if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86")
    set(QUILLON_ARCHITECTURE x86)
    set(QUILLON_MANIFEST_ARCHITECTURE x86)
    set(oldest_windows 4.0)
    # A 486 has no conditional moves; the prebuilt runtime asks for a Pentium Pro all the same (README).
    add_compile_options(-march=i686 -mno-sse)
    # The exports of the DLLs carry their plain names, as COM asks for them.
    add_link_options(-Wl,--enable-stdcall-fixup)
else()
    set(QUILLON_ARCHITECTURE x64)
    set(QUILLON_MANIFEST_ARCHITECTURE amd64)
    # XP x64 is the first Windows for this processor.
    set(oldest_windows 5.2)
endif()
string(REPLACE "." ";" version_parts ${oldest_windows})
list(GET version_parts 0 major)
list(GET version_parts 1 minor)
foreach(kind subsystem os)
    add_link_options(-Wl,--major-${kind}-version=${major} -Wl,--minor-${kind}-version=${minor})
endforeach()

# The complete program folder: Quillon.exe, Helmkit.dll, QLNCustom.dll.
set(QUILLON_PROGRAM_FOLDER ${PROJECT_BINARY_DIR}/program)

set(QUILLON_HOME_PAGE "http://mardelix.example/" CACHE STRING "The maker's home page")
set(QUILLON_DOWNLOAD_SITE "http://mardelix.example/" CACHE STRING "Where companion tools are downloaded from")
set(QUILLON_SUPPORT_HOST "mardelix.example" CACHE STRING "The host that support requests are sent to")
set(QUILLON_PORTAL_PAGE "http://www.msn.com/" CACHE STRING "The portal home page of the start-page check")

# widl makes header, identifiers and type library from one IDL file. The Automation base types come from
# libwine-dev, the standard type library from libwine.
if(QUILLON_ARCHITECTURE STREQUAL "x86")
    find_program(WIDL i686-w64-mingw32-widl REQUIRED)
else()
    find_program(WIDL x86_64-w64-mingw32-widl REQUIRED)
endif()
find_path(AUTOMATION_IDL oaidl.idl PATHS /usr/include/wine/wine/windows REQUIRED NO_CMAKE_FIND_ROOT_PATH)
file(GLOB STANDARD_TYPE_LIBRARIES /usr/lib/*/wine/*/stdole2.tlb)
list(GET STANDARD_TYPE_LIBRARIES 0 STANDARD_TYPE_LIBRARY)
get_filename_component(STANDARD_TYPE_LIBRARY_FOLDER ${STANDARD_TYPE_LIBRARY} DIRECTORY)

# Adds the library `target` with the generated header NAME.h and identifiers, and makes NAME.tlb beside it.
function(add_idl target idl)
    get_filename_component(name ${idl} NAME_WE)
    set(out ${CMAKE_CURRENT_BINARY_DIR})
    set(flags -I${AUTOMATION_IDL} -L${STANDARD_TYPE_LIBRARY_FOLDER})
    add_custom_command(
        OUTPUT ${out}/${name}.h ${out}/${name}_i.c ${out}/${name}.tlb
        COMMAND ${WIDL} ${flags} -h -o ${out}/${name}.h ${CMAKE_CURRENT_SOURCE_DIR}/${idl}
        COMMAND ${WIDL} ${flags} -u -o ${out}/${name}_i.c ${CMAKE_CURRENT_SOURCE_DIR}/${idl}
        # A type library carries its time of making; 0 gives the same bytes always.
        COMMAND ${CMAKE_COMMAND} -E env WIDL_TIME_OVERRIDE=0 ${WIDL} ${flags} -t -o ${out}/${name}.tlb ${CMAKE_CURRENT_SOURCE_DIR}/${idl}
        DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${idl} VERBATIM)
    set_source_files_properties(${out}/${name}_i.c PROPERTIES LANGUAGE CXX)
    add_library(${target} STATIC ${out}/${name}_i.c ${out}/${name}.h)
    target_include_directories(${target} PUBLIC ${out})
endfunction()

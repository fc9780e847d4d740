enable_language(RC)
pkg_check_modules(HIDAPI REQUIRED IMPORTED_TARGET hidapi)

# What the program asks of the system: Windows 10, and no text macros that replace function names.
add_compile_definitions(
    _WIN32_WINNT=0x0A00 WINVER=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN UNICODE _UNICODE
    NO_DSHOW_STRSAFE)
# Address space layout randomisation with all of its 64 bits, as the system's own programs have it.
add_link_options(-Wl,--dynamicbase,--high-entropy-va,--nxcompat)
# The interfaces of COM have no destructors, so a class that implements one cannot have a virtual one.
target_compile_options(marvik_warnings INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-Wno-non-virtual-dtor>)

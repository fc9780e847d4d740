# Every warning is an error: a narrowing conversion in this program ends up on the wire or in a
# camera's register.
add_library(marvik_warnings INTERFACE)
target_compile_options(marvik_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    -Wcast-align -Werror
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>)
target_compile_definitions(marvik_warnings INTERFACE
    QT_DEPRECATED_WARNINGS QT_DISABLE_DEPRECATED_BEFORE=0x050F00)

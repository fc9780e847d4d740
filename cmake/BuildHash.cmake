# marvik_build_hash(<variable>): six digits that tell which sources a build was made of; "source" where
# they come without their history. MARVIK_BUILD_HASH given on the command line wins.
function(marvik_build_hash variable)
    if(DEFINED CACHE{MARVIK_BUILD_HASH})
        return()
    endif()
    execute_process(
        COMMAND git rev-parse --short=6 HEAD
        WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
        OUTPUT_VARIABLE hash OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET
        RESULT_VARIABLE status)
    if(NOT status EQUAL 0 OR hash STREQUAL "")
        set(hash source)
    endif()
    set(${variable} ${hash} PARENT_SCOPE)
endfunction()

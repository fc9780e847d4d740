if(MARVIK_SANITIZE)
    # Line numbers are what a report needs, and with less to write and link the build is faster.
    add_compile_options(-g1)
    add_compile_options(-fsanitize=${MARVIK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${MARVIK_SANITIZE})
endif()

if(MARVIK_SANITIZE)
    add_compile_options(-fsanitize=${MARVIK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${MARVIK_SANITIZE})
endif()

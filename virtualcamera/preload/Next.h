#pragma once

#include <dlfcn.h>

/* The definition of a C library function behind this library: umockdev's, when it has one. The
 * lookup is repeated by threads that race for it; all find the same. */
#define DEFINE_NEXT(result, alias, name, ...)                                                      \
    static result (*alias(void))(__VA_ARGS__)                                                      \
    {                                                                                              \
        static result (*volatile function)(__VA_ARGS__);                                           \
        if (!function)                                                                             \
            *(void**)&function = dlsym(RTLD_NEXT, name);                                           \
        return function;                                                                           \
    }

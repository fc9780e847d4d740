#pragma once

#include <dlfcn.h>

/* The next definition of a C library function after this library's: umockdev's, when it has one.
 * Threads that race may each look it up; all find the same. */
#define DEFINE_NEXT(result, alias, name, ...)                                                      \
    static result (*alias(void))(__VA_ARGS__)                                                      \
    {                                                                                              \
        static result (*volatile function)(__VA_ARGS__);                                           \
        if (!function)                                                                             \
            *(void**)&function = dlsym(RTLD_NEXT, name);                                           \
        return function;                                                                           \
    }

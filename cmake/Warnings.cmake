# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors
# What every target of this project is compiled with.
option(BILDKURIER_WERROR "Treat warnings as errors" ON)

add_library(warnings INTERFACE)
# Designated initialisers leave fields out on purpose.
target_compile_options(warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wno-missing-field-initializers)
if(CMAKE_UNITY_BUILD)
    # Of joined sources, GCC takes all but the one that joins them for headers.
    target_compile_options(warnings INTERFACE
        $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
endif()
if(BILDKURIER_WERROR)
    target_compile_options(warnings INTERFACE -Werror)
endif()

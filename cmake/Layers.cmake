# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors

# One library per layer, named after its folder and built from every source in it. A layer
# sees its own headers and those of the layers named after SEES (and of what these see), so
# that an include in the wrong direction does not compile. ROOMS are sub-folders with headers;
# WITHOUT names beginnings of paths in the layer that are of another system.
function(bildkurier_layer name)
    cmake_parse_arguments(LAYER "" "" "SEES;USES;ROOMS;WITHOUT" ${ARGN})
    string(TOLOWER ${name} target)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp *.mm *.h)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    foreach(start IN LISTS LAYER_WITHOUT)
        list(FILTER sources EXCLUDE REGEX "^${CMAKE_CURRENT_SOURCE_DIR}/${start}")
    endforeach()
    add_library(${target} STATIC ${sources})
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME bildkurier-${target} LINKER_LANGUAGE CXX)
    target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    foreach(room IN LISTS LAYER_ROOMS)
        target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/${room})
    endforeach()
    list(TRANSFORM LAYER_SEES TOLOWER)
    target_link_libraries(${target} PUBLIC ${LAYER_SEES} PRIVATE warnings ${LAYER_USES})
endfunction()

# SPDX-License-Identifier: GPL-3.0-or-later
# SPDX-FileCopyrightText: The Bildkurier authors

# The handbook as pages for a browser, with pictures that are taken of the window.
option(BILDKURIER_HANDBOOK "Do not install without the handbook" OFF)
if(BILDKURIER_HANDBOOK)
    find_program(CMARK cmark-gfm REQUIRED)
else()
    find_program(CMARK cmark-gfm)
    set(unless_missing OPTIONAL)
endif()
set(book ${PROJECT_BINARY_DIR}/Handbuch)
if(CMARK AND TARGET UIScreenshots)
    add_custom_target(handbook
        COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
            ${CMAKE_CURRENT_SOURCE_DIR}/make-handbook ${PROJECT_SOURCE_DIR}/Docs/Handbuch.md ${book}
            $<TARGET_FILE:UIScreenshots>
        DEPENDS UIScreenshots VERBATIM)
    # Slow with a sanitizer, and the same.
    if(CMAKE_BUILD_TYPE STREQUAL "Release")
        add_test(NAME Packaging.HandbookHasItsPictures
            COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/make-handbook
                ${PROJECT_SOURCE_DIR}/Docs/Handbuch.md ${CMAKE_CURRENT_BINARY_DIR}/handbook
                $<TARGET_FILE:UIScreenshots>)
        set_tests_properties(Packaging.HandbookHasItsPictures PROPERTIES
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8" TIMEOUT 120)
    endif()
endif()
if(BUILD_TESTING)
    add_test(NAME Packaging.HandbookQuotesWhatTheProgramsSay
        COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/check-handbook ${PROJECT_SOURCE_DIR}/Docs/Handbuch.md
            ${PROJECT_SOURCE_DIR}/Sources)
endif()
install(DIRECTORY ${book} DESTINATION ${CMAKE_INSTALL_DOCDIR} ${unless_missing})

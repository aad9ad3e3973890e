# SPDX-License-Identifier: GPL-3.0-or-later
# Languages of the program, in the program.

find_program(QUILLABRAE_LRELEASE lrelease HINTS /usr/lib/qt6/bin "${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS}"
    REQUIRED DOC "The compiler of translations, of Qt 6")

# quillabrae_translations(TARGET NAME FILE.ts...)
# Compiles the files and puts them into the target, where platform/Translations.h looks for them.
function(quillabrae_translations target name)
    set(compiled)
    foreach(source ${ARGN})
        get_filename_component(base "${source}" NAME_WE)
        set(result "${CMAKE_CURRENT_BINARY_DIR}/translations/${base}.qm")
        add_custom_command(OUTPUT "${result}"
            COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_CURRENT_BINARY_DIR}/translations"
            COMMAND "${QUILLABRAE_LRELEASE}" -silent "${source}" -qm "${result}"
            DEPENDS "${source}" VERBATIM)
        list(APPEND compiled "${result}")
    endforeach()
    qt_add_resources(${target} ${name}
        PREFIX "/translations" BASE "${CMAKE_CURRENT_BINARY_DIR}/translations" FILES ${compiled})
endfunction()

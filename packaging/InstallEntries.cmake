# SPDX-License-Identifier: GPL-3.0-or-later
# Run by the installation, which alone knows its prefix for good: what names the program by its place.
# Needs `id`, `bindir`, `datadir`, `sources` and `scratch`.
cmake_path(ABSOLUTE_PATH bindir BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE)
cmake_path(ABSOLUTE_PATH datadir BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE)

# As the bus and as menus read a command: a word with anything special in it is quoted, and menus read
# escapes twice and take a percent sign for more than itself.
set(program "${bindir}/quillabrae")
set(for_menu "${program}")
if(NOT program MATCHES "^[A-Za-z0-9_/.+-]+$")
    string(REGEX REPLACE "([\\\"`$])" "\\\\\\1" program "${program}")
    set(program "\"${program}\"")
    string(REPLACE "\\" "\\\\" for_menu "${program}")
    string(REPLACE "%" "%%" for_menu "${for_menu}")
endif()
# Where every session looks for programs the name is enough.
if(bindir STREQUAL "/usr/bin" OR bindir STREQUAL "/usr/local/bin")
    set(for_menu "quillabrae")
endif()

set(QUILLABRAE_PROGRAM "${program}")
configure_file("${sources}/${id}.service.in" "${scratch}/${id}.service" @ONLY)
file(INSTALL "${scratch}/${id}.service" DESTINATION "${datadir}/dbus-1/services")

file(READ "${sources}/${id}.desktop" entry)
string(REPLACE "Exec=quillabrae" "Exec=${for_menu}" entry "${entry}")
file(CONFIGURE OUTPUT "${scratch}/${id}.desktop" CONTENT "@entry@" @ONLY)
file(INSTALL "${scratch}/${id}.desktop" DESTINATION "${datadir}/applications")

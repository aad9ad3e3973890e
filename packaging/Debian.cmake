# The Debian package: `./dev package` builds it. Everything in it goes by the day of the release or by
# SOURCE_DATE_EPOCH, so that one source gives one package.
set(day "${QUILLABRAE_RELEASE_DATE}")
execute_process(COMMAND date --utc --date "${day}" +%a,\ %d\ %b\ %Y\ %H:%M:%S\ +0000
    OUTPUT_VARIABLE release_day OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

# compressed(FILE DESTINATION): a text that Debian wants compressed, without its time and name.
function(compressed file destination)
    get_filename_component(name "${file}" NAME)
    set(result "${CMAKE_CURRENT_BINARY_DIR}/compressed/${name}.gz")
    add_custom_command(OUTPUT "${result}"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_CURRENT_BINARY_DIR}/compressed"
        COMMAND gzip -9nc "${file}" > "${result}"
        DEPENDS "${file}" VERBATIM)
    add_custom_target("compressed-${name}" ALL DEPENDS "${result}")
    install(FILES "${result}" DESTINATION "${destination}")
endfunction()

configure_file(debian/changelog.in changelog @ONLY)
compressed("${CMAKE_CURRENT_BINARY_DIR}/changelog" "${CMAKE_INSTALL_DOCDIR}")
compressed("${CMAKE_CURRENT_BINARY_DIR}/quillabrae.1" "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES debian/copyright DESTINATION "${CMAKE_INSTALL_DOCDIR}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillabrae)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${QUILLABRAE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "paint editor with layers, selections and effects")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Quillabrae is a paint editor for one person at one computer. Open a photo or
an empty canvas, paint, erase, select, move, write and draw shapes on layers,
and keep the result as a project whose layers stay editable, or as a picture
for everybody else.
.
Work that is open comes back after a crash, with its undo history.")
# Installs beside the prefix and not with another one, which files would then name.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${QUILLABRAE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${QUILLABRAE_HOMEPAGE}")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# Libraries are found by what the programs are linked with; plugins and data have to be named.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, qt6-image-formats-plugins, breeze-icon-theme")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core, libglib2.0-bin, qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "gnome-keyring | kwalletmanager, webp, xdg-desktop-portal")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)

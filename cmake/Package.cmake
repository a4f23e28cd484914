# The Debian package: cmake -DORVA_PACKAGE=ON, then cpack -G DEB. The program folder is
# installed read-only as a template, lib/orva-calendar, beside Shipped.list, the list of its
# files; bin/orva-calendar is the launcher that gives every user a program folder of their
# own made from it (packaging/orva-calendar.in).
set(ORVA_PACKAGE_VERSION "" CACHE STRING "The package's version; empty for the project's")
set(ORVA_DEB_VERSION ${ORVA_PACKAGE_VERSION})
if(NOT ORVA_DEB_VERSION)
    set(ORVA_DEB_VERSION ${PROJECT_VERSION})
endif()
set(ORVA_MAINTAINER "ORVA Calendar developers <orva-calendar@example.com>")
set(ORVA_DOC_DIR share/doc/orva-calendar)

install(CODE "
    set(ORVA_TEMPLATE_DIR \"\${CMAKE_INSTALL_PREFIX}/${ORVA_INSTALL_DIR}\")
    configure_file(\"${PROJECT_SOURCE_DIR}/packaging/orva-calendar.in\"
                   \"${CMAKE_BINARY_DIR}/packaging/launcher/orva-calendar\" @ONLY)
    file(INSTALL \"${CMAKE_BINARY_DIR}/packaging/launcher/orva-calendar\"
         DESTINATION \"\${CMAKE_INSTALL_PREFIX}/bin\"
         FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                          WORLD_READ WORLD_EXECUTE)

    # The launcher refreshes a user's folder when this list differs from the one there.
    set(folder \"\$ENV{DESTDIR}\${ORVA_TEMPLATE_DIR}\")
    file(GLOB names RELATIVE \"\${folder}\" \"\${folder}/*\")
    list(REMOVE_ITEM names Shipped.list)
    list(SORT names)
    set(list \"ORVA Calendar ${ORVA_DEB_VERSION}\\n\")
    foreach(name IN LISTS names)
        file(SHA256 \"\${folder}/\${name}\" sum)
        string(APPEND list \"\${sum}  \${name}\\n\")
    endforeach()
    file(WRITE \"\${folder}/Shipped.list\" \"\${list}\")
")

# Debian's hardening: the global offset table is read-only once the program has started.
target_link_options(orva-calendar PRIVATE -Wl,-z,relro,-z,now)
target_link_options(orva-logo PRIVATE -Wl,-z,relro,-z,now)

install(FILES ${PROJECT_SOURCE_DIR}/packaging/com.example.OrvaCalendar.metainfo.xml
        DESTINATION share/metainfo)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright DESTINATION ${ORVA_DOC_DIR})

# Debian wants the change log and the manual page compressed, and the same bytes every build.
find_program(GZIP_PROGRAM gzip REQUIRED)
function(orva_gzip from dir)
    get_filename_component(name ${from} NAME)
    set(out ${CMAKE_BINARY_DIR}/packaging/${name}.gz)
    add_custom_command(OUTPUT ${out} COMMAND ${GZIP_PROGRAM} -9nc ${from} > ${out} DEPENDS ${from})
    install(FILES ${out} DESTINATION ${dir})
    set_property(DIRECTORY APPEND PROPERTY ORVA_GZIPPED ${out})
endfunction()
configure_file(${PROJECT_SOURCE_DIR}/packaging/changelog.in ${CMAKE_BINARY_DIR}/packaging/changelog
               @ONLY)
orva_gzip(${CMAKE_BINARY_DIR}/packaging/changelog ${ORVA_DOC_DIR})
orva_gzip(${PROJECT_SOURCE_DIR}/packaging/orva-calendar.1 share/man/man1)
get_property(gzipped DIRECTORY PROPERTY ORVA_GZIPPED)
add_custom_target(orva_package_docs ALL DEPENDS ${gzipped})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orva-calendar)
set(CPACK_PACKAGE_VERSION ${ORVA_DEB_VERSION})
set(CPACK_PACKAGE_CONTACT ${ORVA_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "year calendar and reminder")
# The first line, the summary, is CPack's.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "ORVA Calendar shows a whole year as twelve month grids, each day coloured by
the category of its events. It reminds you of an event with a coloured window
and a chime, or opens a file or program at its time. Events happen once or
recur every day, week, month or year. The calendar sits in the notification
area, can be locked with a password and can start at login.
.
Each user's events are kept in plain INI files in a program folder of their
own, ~/.local/share/orva-calendar, which removing the package leaves in place.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://www.example.com/orva-calendar/)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Qt runs natively on Wayland with its Wayland plugin; without it, through XWayland.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-wayland)
set(CPACK_STRIP_FILES ON)
# Installed under the configured prefix (/usr unless told otherwise) through DESTDIR, so the
# install code above writes the package's own paths into the entries and the launcher.
set(CPACK_SET_DESTDIR ON)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
include(CPack)

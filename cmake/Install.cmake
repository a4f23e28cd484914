# cmake --install: the program keeps everything in its own folder, so the executable and
# every data file go into one folder under the prefix, where the user's Data.ini will live
# too. That folder must be the user's to write: by default the prefix is ~/.local.
# With ORVA_PACKAGE, the layout of the system package instead (cmake/Package.cmake).
option(ORVA_PACKAGE "Install the layout of the system package, for cpack" OFF)
if(UNIX AND CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
    if(ORVA_PACKAGE)
        set(CMAKE_INSTALL_PREFIX /usr CACHE PATH "Install prefix" FORCE)
    else()
        set(CMAKE_INSTALL_PREFIX "$ENV{HOME}/.local" CACHE PATH "Install prefix" FORCE)
    endif()
endif()
if(ORVA_PACKAGE)
    # A system's folders are everyone's to read, whatever the umask of the build.
    set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
        GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endif()
if(WIN32)
    set(ORVA_INSTALL_DIR .)
else()
    set(ORVA_INSTALL_DIR lib/orva-calendar)
endif()

install(TARGETS orva-calendar orva-logo RUNTIME DESTINATION ${ORVA_INSTALL_DIR})
# Ours, replaced by every install.
install(FILES ${PROJECT_SOURCE_DIR}/data/alarm.wav ${PROJECT_SOURCE_DIR}/data/help.hlp
              ${PROJECT_SOURCE_DIR}/data/homepage.html
              ${PROJECT_SOURCE_DIR}/data/logo.x ${PROJECT_SOURCE_DIR}/data/mdata.ini
        DESTINATION ${ORVA_INSTALL_DIR})
# The starter store only where there is none. The user's own files (Data.ini, Pass.ini,
# Last_Print.txt, temp.url) are never installed over.
install(CODE "
    set(folder \"\${CMAKE_INSTALL_PREFIX}/${ORVA_INSTALL_DIR}\")
    if(EXISTS \"\$ENV{DESTDIR}\${folder}/Data.ini\")
        message(STATUS \"Kept: \$ENV{DESTDIR}\${folder}/Data.ini\")
    else()
        file(INSTALL \"${PROJECT_SOURCE_DIR}/data/Data.ini\" DESTINATION \"\${folder}\")
    endif()
")

if(UNIX AND NOT APPLE)
    # The launcher, the icon and a start-up entry that the user may copy to
    # ~/.config/autostart. The entries name the program by its installed path, which is
    # known only at install time (--prefix may differ from the configured prefix).
    install(FILES ${PROJECT_SOURCE_DIR}/data/orva-calendar.svg
            DESTINATION share/icons/hicolor/scalable/apps)
    if(ORVA_PACKAGE)
        # The system's own prefix: the launcher is on the PATH and the icon in the theme.
        set(ORVA_PROGRAM_AT "\${CMAKE_INSTALL_PREFIX}/bin/orva-calendar")
        set(ORVA_ICON_AT orva-calendar)
    else()
        set(ORVA_PROGRAM_AT "\${CMAKE_INSTALL_PREFIX}/${ORVA_INSTALL_DIR}/orva-calendar")
        set(ORVA_ICON_AT
            "\${CMAKE_INSTALL_PREFIX}/share/icons/hicolor/scalable/apps/orva-calendar.svg")
    endif()
    install(CODE "
        set(ORVA_PROGRAM \"${ORVA_PROGRAM_AT}\")
        set(ORVA_ICON \"${ORVA_ICON_AT}\")
        foreach(entry orva-calendar orva-calendar-autostart)
            configure_file(\"${PROJECT_SOURCE_DIR}/packaging/\${entry}.desktop.in\"
                           \"${CMAKE_BINARY_DIR}/packaging/\${entry}/orva-calendar.desktop\" @ONLY)
        endforeach()
        file(INSTALL \"${CMAKE_BINARY_DIR}/packaging/orva-calendar/orva-calendar.desktop\"
             DESTINATION \"\${CMAKE_INSTALL_PREFIX}/share/applications\")
        file(INSTALL \"${CMAKE_BINARY_DIR}/packaging/orva-calendar-autostart/orva-calendar.desktop\"
             DESTINATION \"\${CMAKE_INSTALL_PREFIX}/share/orva-calendar/autostart\")
    ")
    if(ORVA_PACKAGE)
        include(${PROJECT_SOURCE_DIR}/cmake/Package.cmake)
    else()
        # On the PATH as well; the program finds its folder through the link.
        install(CODE "
            file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin\")
            file(CREATE_LINK \"../${ORVA_INSTALL_DIR}/orva-calendar\"
                 \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin/orva-calendar\" SYMBOLIC)
        ")
    endif()
endif()

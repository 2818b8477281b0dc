include(CMakePackageConfigHelpers)

set(COMMONAPI_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/CommonAPI)

install(TARGETS CommonAPI EXPORT CommonAPITargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/CommonAPI DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES LICENSES/MIT.txt RENAME LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
    PATTERN Doxyfile EXCLUDE PATTERN *.py EXCLUDE PATTERN docs/*.md EXCLUDE PATTERN "site*" EXCLUDE)

# The pages, with the bare text of links to what is not installed beside them.
file(GLOB pages RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS README.md CHANGELOG.md docs/*.md)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${pages})
file(REMOVE_RECURSE ${PROJECT_BINARY_DIR}/pages)
foreach(page IN LISTS pages)
    file(READ ${page} text)
    string(REGEX REPLACE
        "\\[([^]]*)\\]\\((\\.\\./)?(include|src|tools|tests|fuzz|bench|scripts|CONTRIBUTING)[^)]*\\)" "\\1"
        text "${text}")
    file(WRITE ${PROJECT_BINARY_DIR}/pages/${page} "${text}")
endforeach()
install(DIRECTORY ${PROJECT_BINARY_DIR}/pages/ DESTINATION ${CMAKE_INSTALL_DOCDIR})

install(EXPORT CommonAPITargets NAMESPACE CommonAPI:: DESTINATION ${COMMONAPI_CMAKE_DIR})

configure_package_config_file(cmake/CommonAPIConfig.cmake.in CommonAPIConfig.cmake
    INSTALL_DESTINATION ${COMMONAPI_CMAKE_DIR})
write_basic_package_version_file(CommonAPIConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/CommonAPIConfig.cmake
              ${PROJECT_BINARY_DIR}/CommonAPIConfigVersion.cmake
    DESTINATION ${COMMONAPI_CMAKE_DIR})

# Back to the prefix from the folder of the .pc file, so that the installed tree can be moved.
cmake_path(IS_RELATIVE CMAKE_INSTALL_LIBDIR COMMONAPI_CAN_BE_MOVED)
if(COMMONAPI_CAN_BE_MOVED)
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
        BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE to_prefix)
    set(COMMONAPI_PC_PREFIX "\${pcfiledir}/${to_prefix}")
else()
    set(COMMONAPI_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
endif()
# An absolute path takes the place of the prefix.
cmake_path(APPEND COMMONAPI_PC_LIBDIR "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
cmake_path(APPEND COMMONAPI_PC_INCLUDEDIR "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
if(NOT Iconv_IS_BUILT_IN)
    set(COMMONAPI_PC_ICONV "-liconv ")
endif()
get_target_property(COMMONAPI_TYPE CommonAPI TYPE)
if(COMMONAPI_TYPE STREQUAL STATIC_LIBRARY)
    set(COMMONAPI_PC_STATIC " -DCOMMONAPI_STATIC")
endif()
configure_file(cmake/CommonAPI.pc.in CommonAPI.pc @ONLY)
# In /usr it names that, so that pkg-config knows its folders to be the system's.
set(COMMONAPI_PC_PREFIX /usr)
configure_file(cmake/CommonAPI.pc.in usr/CommonAPI.pc @ONLY)
install(CODE "set(pc_file CommonAPI.pc)
    if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
        set(pc_file usr/CommonAPI.pc)
    endif()")
install(FILES ${PROJECT_BINARY_DIR}/\${pc_file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(FILES ${PROJECT_SOURCE_DIR}/packaging/lnav/commonapi_log.json
    DESTINATION ${CMAKE_INSTALL_DATADIR}/CommonAPI/lnav)
if(BUILD_SHARED_LIBS)
    # gdb finds it by the path of the library, which is known when it is installed.
    install(CODE "cmake_path(APPEND libdir \"\${CMAKE_INSTALL_PREFIX}\" \"${CMAKE_INSTALL_LIBDIR}\")
        cmake_path(ABSOLUTE_PATH libdir)")
    install(FILES ${PROJECT_SOURCE_DIR}/src/types/gdb_printers.py
        DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load\${libdir}
        RENAME $<TARGET_FILE_NAME:CommonAPI>-gdb.py)
endif()

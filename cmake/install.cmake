include(CMakePackageConfigHelpers)

set(COMMONAPI_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/CommonAPI)

install(TARGETS CommonAPI EXPORT CommonAPITargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/CommonAPI DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES LICENSES/MIT.txt RENAME LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
    PATTERN Doxyfile EXCLUDE PATTERN *.py EXCLUDE PATTERN "site*" EXCLUDE)
install(EXPORT CommonAPITargets NAMESPACE CommonAPI:: DESTINATION ${COMMONAPI_CMAKE_DIR})

configure_package_config_file(cmake/CommonAPIConfig.cmake.in CommonAPIConfig.cmake
    INSTALL_DESTINATION ${COMMONAPI_CMAKE_DIR})
write_basic_package_version_file(CommonAPIConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/CommonAPIConfig.cmake
              ${PROJECT_BINARY_DIR}/CommonAPIConfigVersion.cmake
    DESTINATION ${COMMONAPI_CMAKE_DIR})

# From the folder of the .pc file back to the prefix, so that the installed tree can be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE COMMONAPI_PC_TO_PREFIX)
if(NOT Iconv_IS_BUILT_IN)
    set(COMMONAPI_PC_ICONV "-liconv ")
endif()
configure_file(cmake/CommonAPI.pc.in CommonAPI.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/CommonAPI.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(FILES ${PROJECT_SOURCE_DIR}/packaging/lnav/commonapi_log.json
    DESTINATION ${CMAKE_INSTALL_DATADIR}/CommonAPI/lnav)
if(BUILD_SHARED_LIBS)
    # gdb finds it by the path of the library, which is known when it is installed.
    install(CODE "cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX OUTPUT_VARIABLE prefix)")
    install(FILES ${PROJECT_SOURCE_DIR}/src/types/gdb_printers.py
        DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load\${prefix}/${CMAKE_INSTALL_LIBDIR}
        RENAME $<TARGET_FILE_NAME:CommonAPI>-gdb.py)
endif()

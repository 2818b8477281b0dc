include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection COMMONAPI_HAS_CF_PROTECTION)
# Whether the compiler or its flags, a distribution's for example, see to this already.
block(PROPAGATE COMMONAPI_IS_FORTIFIED)
    set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
    set(CMAKE_TRY_COMPILE_CONFIGURATION ${CMAKE_BUILD_TYPE})
    try_compile(COMMONAPI_IS_FORTIFIED
        SOURCE_FROM_CONTENT fortified.cpp "#if _FORTIFY_SOURCE < 2\n#error\n#endif\n"
        COMPILE_DEFINITIONS -O2 NO_CACHE)
endblock()
# From the folder of the programs to that of the library, so that the installed tree can be moved.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(COMMONAPI_INSTALL_RPATH ${CMAKE_INSTALL_LIBDIR})
else()
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR}
        OUTPUT_VARIABLE COMMONAPI_INSTALL_RPATH)
    string(PREPEND COMMONAPI_INSTALL_RPATH "$ORIGIN/")
endif()

# What every target of ours is compiled with; nothing of it reaches those who link the library.
function(commonapi_compile_defaults target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast -Wnon-virtual-dtor
        -Wcast-qual -Wformat-security -Wundef)
    set(release $<NOT:$<CONFIG:Debug>>)
    target_compile_definitions(${target} PRIVATE $<${release}:_GLIBCXX_ASSERTIONS>)
    target_compile_options(${target} PRIVATE
        "$<${release}:-fstack-protector-strong>"
        "$<$<AND:${release},$<BOOL:${COMMONAPI_HAS_CF_PROTECTION}>>:-fcf-protection>")
    if(NOT COMMONAPI_IS_FORTIFIED)
        # It takes an optimiser, which a parent that sets no build type goes without.
        target_compile_options(${target} PRIVATE
            "$<$<AND:${release},$<BOOL:$<CONFIG>>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    endif()
    target_link_options(${target} PRIVATE "$<${release}:LINKER:-z,relro,-z,now>")
    # What is shipped is the same wherever it was built.
    foreach(folder ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR})
        target_compile_options(${target} PRIVATE "$<${release}:-ffile-prefix-map=${folder}=.>")
    endforeach()
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF BUILD_RPATH_USE_ORIGIN ON)
    if(NOT DEFINED CMAKE_INSTALL_RPATH)
        set_target_properties(${target} PROPERTIES INSTALL_RPATH "${COMMONAPI_INSTALL_RPATH}")
    endif()
endfunction()

# An object library whose objects become part of the library and, hidden though they are, of the
# tests and benchmarks.
function(commonapi_add_objects target)
    add_library(${target} OBJECT ${ARGN})
    commonapi_compile_defaults(${target})
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/include
                                                 ${PROJECT_SOURCE_DIR}/src)
    set_target_properties(${target} PROPERTIES
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    target_compile_definitions(${target} PRIVATE
        $<$<BOOL:${COMMONAPI_HARDENED}>:COMMONAPI_HARDENED>
        $<$<STREQUAL:$<TARGET_PROPERTY:CommonAPI,TYPE>,STATIC_LIBRARY>:COMMONAPI_STATIC>)
    set_property(GLOBAL APPEND PROPERTY COMMONAPI_OBJECTS $<TARGET_OBJECTS:${target}>)
endfunction()

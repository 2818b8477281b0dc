include(FetchContent)
include(GoogleTest)
# Where there is no library of this width, from the source that comes with the package.
FetchContent_Declare(GTest SOURCE_DIR /usr/src/googletest FIND_PACKAGE_ARGS)
FetchContent_MakeAvailable(GTest)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

# A test program; each of its tests runs in a process of its own.
function(commonapi_add_test_of library name)
    add_executable(${name} ${ARGN})
    commonapi_compile_defaults(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE TESTS="${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE ${library} GTest::gtest_main GTest::gmock)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
endfunction()

function(commonapi_add_test name)
    commonapi_add_test_of(commonapi_internal ${name} ${ARGN})
endfunction()

# A Python program that looks at what was built.
function(commonapi_add_check name program)
    add_test(NAME ${name}
        COMMAND ${Python3_EXECUTABLE} ${program} ${PROJECT_SOURCE_DIR} ${ARGN}
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
endfunction()

# Every public header compiles alone, in each language standard that clients use.
function(commonapi_add_header_checks)
    file(GLOB headers RELATIVE ${PROJECT_SOURCE_DIR}/include
        ${PROJECT_SOURCE_DIR}/include/CommonAPI/*.h)
    foreach(header IN LISTS headers)
        file(CONFIGURE OUTPUT ${header}.cpp CONTENT "#include <${header}>\n")
        list(APPEND sources ${CMAKE_CURRENT_BINARY_DIR}/${header}.cpp)
    endforeach()
    foreach(standard 17 20 23)
        add_library(headers_${standard} OBJECT ${sources})
        commonapi_compile_defaults(headers_${standard})
        set_target_properties(headers_${standard} PROPERTIES CXX_STANDARD ${standard})
        target_link_libraries(headers_${standard} PRIVATE CommonAPI::CommonAPI)
    endforeach()
endfunction()

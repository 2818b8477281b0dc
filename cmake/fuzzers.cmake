# A program that libFuzzer drives, or, in all other builds, a test that replays its corpus.
function(commonapi_add_fuzz_target name)
    set(target fuzz_${name})
    add_executable(${target} ${name}.cpp)
    commonapi_compile_defaults(${target})
    target_compile_options(${target} PRIVATE -Wno-conversion)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${target} PRIVATE commonapi_internal ${ARGN})
    if(COMMONAPI_BUILD_FUZZERS)
        target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    else()
        target_compile_definitions(${target} PRIVATE REPLAY)
        add_test(NAME ${target}
            COMMAND ${target} ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name} ${operations})
    endif()
endfunction()

# One that applies operations to a class and to its model; the test does so at random too.
function(commonapi_add_model name)
    set(operations 200000)
    commonapi_add_fuzz_target(${name})
endfunction()

# Applies operations to a class and to its model: driven by libFuzzer, or, in all other builds, a test
# that replays its corpus and some at random.
function(commonapi_add_model name)
    set(target fuzz_${name})
    add_executable(${target} ${name}.cpp)
    commonapi_compile_defaults(${target})
    target_compile_options(${target} PRIVATE -Wno-conversion)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${target} PRIVATE commonapi_internal)
    if(COMMONAPI_BUILD_FUZZERS)
        target_sources(${target} PRIVATE libfuzzer.cpp)
        target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    else()
        target_sources(${target} PRIVATE replay.cpp)
        add_test(NAME ${target}
            COMMAND ${target} ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name} 100000)
    endif()
endfunction()

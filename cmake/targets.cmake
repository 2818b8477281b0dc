# What every target of ours is compiled with; nothing of it reaches those who link the library.
function(commonapi_compile_defaults target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast -Wnon-virtual-dtor
        -Wcast-qual -Wformat-security -Wundef)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
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
    set_property(GLOBAL APPEND PROPERTY COMMONAPI_OBJECTS $<TARGET_OBJECTS:${target}>)
endfunction()

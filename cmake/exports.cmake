# Stops where the standard library, the compiler's flags or the linker would not let the shared library
# export what src/exports.map lists: builds two of its functions and a client that asks for them.
function(commonapi_require_listed_exports)
    string(JOIN "|" settings ${CMAKE_CXX_COMPILER} ${CMAKE_CXX_FLAGS} ${CMAKE_SHARED_LINKER_FLAGS})
    if(COMMONAPI_EXPORTS_AS_LISTED STREQUAL settings)
        return()
    endif()
    set(sample ${PROJECT_BINARY_DIR}/CMakeFiles/liblisted_exports.so)
    set(common CXX_STANDARD 17 CMAKE_FLAGS -DINCLUDE_DIRECTORIES=${PROJECT_SOURCE_DIR}/include)
    separate_arguments(linker_flags UNIX_COMMAND "${CMAKE_SHARED_LINKER_FLAGS}")
    set(head "#include <CommonAPI/attribute_map.h>\n#include <CommonAPI/byte_array.h>\n")
    try_compile(built SOURCE_FROM_CONTENT library.cpp "${head}
        ByteArray& ByteArray::operator=(std::vector<int> const&) { return *this; }
        bool AttributeMap::fetchIteratorByIndex(long const&,
            std::map<std::string, UnicodeString>::iterator&) { return false; }"
        COMPILE_DEFINITIONS -fPIC
        LINK_OPTIONS -shared ${linker_flags}
            LINKER:--version-script=${CMAKE_CURRENT_SOURCE_DIR}/exports.map
        COPY_FILE ${sample} ${common})
    try_compile(linked SOURCE_FROM_CONTENT client.cpp "${head}
        ByteArray& (ByteArray::*assign)(std::vector<int> const&) = &ByteArray::operator=;
        auto fetch = &AttributeMap::fetchIteratorByIndex;
        int main() { return assign && fetch ? 0 : 1; }"
        LINK_LIBRARIES ${sample} ${common})
    if(NOT built OR NOT linked)
        message(FATAL_ERROR "With this standard library, linker or these flags a shared library would not export what src/exports.map lists; BUILD_SHARED_LIBS=OFF builds a static one.")
    endif()
    set(COMMONAPI_EXPORTS_AS_LISTED "${settings}" CACHE INTERNAL "Settings that were tried")
endfunction()

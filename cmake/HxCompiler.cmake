# Compiler settings that every target shares.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
# Programs and libraries find the libraries from where they are, in the build tree and when installed: no
# installation has to change them.
file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(CMAKE_INSTALL_RPATH $ORIGIN $ORIGIN/../lib $ORIGIN/${libraries})
list(REMOVE_DUPLICATES CMAKE_INSTALL_RPATH)
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)

find_program(HX_CCACHE ccache)
if(HX_CCACHE)
    # Precompiled headers are told apart by content, and checkouts side by side share what they compile.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 CCACHE_PCH_EXTSUM=1
        CCACHE_SLOPPINESS=pch_defines,time_macros ${HX_CCACHE})
endif()

# Some libraries ask for it, and a precompiled header serves only those who agree.
add_compile_options(-pthread)
add_compile_options(-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(CMAKE_BUILD_TYPE STREQUAL "Debug")
    add_compile_options(-Og -g1)
endif()
# Half the link time of the default linker where it is there.
find_program(HX_LLD ld.lld)
if(HX_LLD)
    add_link_options(-fuse-ld=lld)
endif()
if(HX_SANITIZE)
    # Not the types behind virtual tables: the rich-text engine is built without them, and those of the module
    # are hidden from the host.
    add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
if(HX_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
    add_link_options(-fsanitize=address,undefined)
endif()
if(HX_SANITIZE OR HX_FUZZ)
    add_library(hxSanitizerDefaults INTERFACE)
    target_sources(hxSanitizerDefaults INTERFACE
        $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${CMAKE_SOURCE_DIR}/tools/sanitizerDefaults.cpp>)
    link_libraries($<BUILD_INTERFACE:hxSanitizerDefaults>)
endif()
# Lines and functions for a stack trace, no types and variables: a third of the size.
set(HX_THIN_DEBUG $<$<CONFIG:RelWithDebInfo>:-g1>)

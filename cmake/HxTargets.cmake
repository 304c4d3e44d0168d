# Precompiled headers, compiled once for many targets. Every file still includes what it uses: the presets
# "sanitizers" and "fuzz" build without them.
option(HX_PRECOMPILE "Precompile the toolkit's headers" ON)

# A target whose only job is the precompiled header; LINK as the targets that are going to share it.
function(hx_headers name)
    cmake_parse_arguments(HEADERS "" "" "LINK;OPTIONS;FILES" ${ARGN})
    if(NOT HX_PRECOMPILE)
        return()
    endif()
    file(WRITE ${CMAKE_BINARY_DIR}/${name}.cpp "")
    add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
    target_link_libraries(${name} PRIVATE ${HEADERS_LINK})
    target_compile_options(${name} PRIVATE ${HEADERS_OPTIONS})
    target_precompile_headers(${name} PRIVATE ${HEADERS_FILES})
    hx_name_headers(${name} "${HEADERS_FILES};${HEADERS_OPTIONS}")
endfunction()

# No two compilations of a precompiled header are the same to the byte. What the compiler cache compares instead:
# which headers, of which versions, for which compiler.
function(hx_name_headers name contents)
    get_target_property(toolkit Qt6::Core INTERFACE_INCLUDE_DIRECTORIES)
    list(FILTER toolkit INCLUDE REGEX "QtCore$")
    list(GET toolkit 0 toolkit)
    file(TIMESTAMP ${toolkit}/qglobal.h stamp)
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${name}.dir/cmake_pch.hxx.gch.sum
         "${contents};${CMAKE_CXX_COMPILER_VERSION};${CMAKE_BUILD_TYPE};${Qt6_VERSION};${stamp};${GTest_VERSION}")
endfunction()

function(hx_precompiled name headers)
    if(HX_PRECOMPILE)
        target_precompile_headers(${name} REUSE_FROM ${headers})
    endif()
endfunction()

# A room is a folder of the source tree built as one static library. The folder is the list of its
# files: a new pair of files is built as soon as it is there.

function(hx_room name)
    cmake_parse_arguments(ROOM "" "" "DIRS;LINK;MOC_HEADERS" ${ARGN})
    set(sources)
    foreach(dir ${ROOM_DIRS})
        file(GLOB found CONFIGURE_DEPENDS ${dir}/*.cpp ${dir}/*.h ${dir}/*.ui)
        list(APPEND sources ${found})
    endforeach()
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    if(NOT sources)
        file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${name}_empty.cpp "")
        set(sources ${CMAKE_CURRENT_BINARY_DIR}/${name}_empty.cpp)
    endif()
    add_library(${name} STATIC ${sources} ${ROOM_MOC_HEADERS})
    set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON)
    target_link_libraries(${name} PUBLIC hxContract ${ROOM_LINK})
    hx_precompiled(${name} hxRoomHeaders)
endfunction()

# All objects of the rooms become part of the library, also those that nobody in it refers to.
function(hx_take_rooms name)
    foreach(room ${ARGN})
        target_sources(${name} PRIVATE $<TARGET_OBJECTS:${room}>)
    endforeach()
endfunction()

# The module: all its rooms in one shared library that exports what the map names, and leaves the
# host's symbols to whichever host loads it.
function(hx_module name)
    cmake_parse_arguments(MODULE "" "EXPORTS" "ROOMS;LINK" ${ARGN})
    file(WRITE ${CMAKE_BINARY_DIR}/${name}_unit.cpp "")
    add_library(${name} SHARED ${CMAKE_BINARY_DIR}/${name}_unit.cpp)
    hx_take_rooms(${name} ${MODULE_ROOMS})
    target_link_libraries(${name} PUBLIC hxContract PRIVATE ${MODULE_LINK})
    target_link_options(${name} PRIVATE LINKER:--version-script=${MODULE_EXPORTS})
    set_target_properties(${name} PROPERTIES LINK_DEPENDS ${MODULE_EXPORTS})
    hx_install_library(${name})
endfunction()

# A test program for one folder of tests/; each of its tests runs in a process of its own, so that
# the process-wide caches of the phone start empty. WAITS: these wait for other processes most of their time.
# They count as half a processor in "ctest -j", which ./test gives twice the number of processors, and they
# begin first, those of the highest COST before all.
function(hx_test name)
    cmake_parse_arguments(TEST "NO_KIT;WAITS" "DIR;TIMEOUT;COST" "LINK;LABELS" ${ARGN})
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 300)
    endif()
    file(GLOB sources CONFIGURE_DEPENDS ${TEST_DIR}/*.cpp ${TEST_DIR}/*.h)
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    set_target_properties(${name} PROPERTIES AUTOMOC ON ENABLE_EXPORTS ON)
    if(TEST_NO_KIT)
        target_link_libraries(${name} PRIVATE ${TEST_LINK} GTest::gmock GTest::gtest_main)
    else()
        target_link_libraries(${name} PRIVATE ${TEST_LINK} hxTestKit)
    endif()
    target_include_directories(${name} PRIVATE ${HX_PLACES})
    target_compile_options(${name} PRIVATE ${HX_THIN_DEBUG})
    if(TEST_NO_KIT)
        hx_precompiled(${name} hxPlainTestHeaders)
    else()
        hx_precompiled(${name} hxTestHeaders)
    endif()
    set(properties TIMEOUT ${TEST_TIMEOUT} PROCESSORS 2)
    if(TEST_WAITS)
        if(NOT TEST_COST)
            set(TEST_COST 10)
        endif()
        set(properties TIMEOUT ${TEST_TIMEOUT} PROCESSORS 1 COST ${TEST_COST})
    endif()
    if(TEST_LABELS)
        list(APPEND properties LABELS ${TEST_LABELS})
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                         PROPERTIES ${properties})
endfunction()

# places.h tells tests and benchmarks where source and build are. A header and no definition, so that a
# compiler cache serves another checkout with all that does not ask.
set(HX_PLACES ${CMAKE_BINARY_DIR}/places)
configure_file(${CMAKE_CURRENT_LIST_DIR}/places.h.in ${HX_PLACES}/places.h @ONLY)

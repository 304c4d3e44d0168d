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
    install(TARGETS ${name} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

# A test program for one folder of tests/; each of its tests runs in a process of its own, so that
# the process-wide caches of the phone start empty.
function(hx_test name)
    cmake_parse_arguments(TEST "NO_KIT" "DIR" "LINK;LABELS" ${ARGN})
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
    target_compile_definitions(${name} PRIVATE HX_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
                               HX_BUILD_DIR="${CMAKE_BINARY_DIR}")
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                         PROPERTIES TIMEOUT 300 LABELS "${TEST_LABELS}")
endfunction()

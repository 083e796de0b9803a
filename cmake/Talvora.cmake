# Compiler settings and the three kinds of target: a core library (standard library only), a Qt library,
# and a test program.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# A folder's sources share what they include, so names local to a file are unique in their folder.
set(CMAKE_UNITY_BUILD ${TALVORA_UNITY})
set(CMAKE_UNITY_BUILD_BATCH_SIZE 0)

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
if(TALVORA_WERROR)
    add_compile_options(-Werror)
endif()
if(TALVORA_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    # Together with the sanitizers this warning of the compiler is known to be wrong.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
endif()

# talvora_core(NAME FOLDER [DEPENDENCIES...]): all sources of one folder of the component. It may link other
# core libraries only, so that a toolkit's header is not even found.
function(talvora_core name folder)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    foreach(dependency ${ARGN})
        if(dependency MATCHES "^Qt")
            message(FATAL_ERROR "${name} belongs to the core and must not link ${dependency}")
        endif()
    endforeach()
    target_link_libraries(${name} PUBLIC ${ARGN})
endfunction()

# talvora_test_options(NAME): a test is compiled more often than it runs. What it tests is built with both
# sanitizers; its own code goes without the slower of them to compile.
function(talvora_test_options name)
    if(TALVORA_SANITIZE)
        target_compile_options(${name} PRIVATE -fno-sanitize=undefined)
    endif()
endfunction()

# talvora_test_program(NAME FOLDER [LIBRARIES...]): all sources of one folder of tests/ as one GoogleTest program.
function(talvora_test_program name folder)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp)
    add_executable(${name} ${sources} ${CMAKE_SOURCE_DIR}/tests/main.cpp)
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    talvora_test_options(${name})
    target_link_libraries(${name} PRIVATE ${ARGN} GTest::gtest GTest::gmock)
endfunction()

# talvora_test(...): the same, run as one test. A process for each case would cost more than most cases do.
function(talvora_test name)
    talvora_test_program(${name} ${ARGN})
    add_test(NAME ${name} COMMAND ${name})
endfunction()

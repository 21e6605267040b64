# quorl_library(NAME SOURCES...): one folder of src/, as a static library that carries our warnings and lets others
# include its headers as "folder/Header.h".
function(quorl_library name)
    add_library(${name} STATIC ${ARGN})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PRIVATE quorl_warnings)
endfunction()

# quorl_test(NAME SOURCES...): one GoogleTest program, each of whose tests is a test of CTest.
if(BUILD_TESTING)
    include(GoogleTest)
endif()
function(quorl_test name)
    add_executable(${name} ${ARGN})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE quorl_warnings GTest::gmock GTest::gtest_main)
    # Discovery at test time: a build neither runs programs nor fails where they cannot run.
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()

# quorl_benchmark(NAME SOURCES...): one Google Benchmark program; "benchmarks" builds them all.
add_custom_target(benchmarks)
function(quorl_benchmark name)
    add_executable(${name} ${ARGN})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/bench ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE quorl_warnings benchmark::benchmark)
    add_dependencies(benchmarks ${name})
endfunction()

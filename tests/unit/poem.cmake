# The scroller's poem, measured with its font.
add_executable(poem_test poem_test.cpp)
target_link_libraries(poem_test PRIVATE show GTest::gtest_main)
target_compile_definitions(poem_test PRIVATE SKAV_DATA="${PROJECT_SOURCE_DIR}/data")
gtest_discover_tests(poem_test)

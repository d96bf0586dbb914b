# The packed picture, its packer, and text.
add_executable(packed_picture_test packed_picture_test.cpp)
target_link_libraries(packed_picture_test PRIVATE show GTest::gtest_main)
gtest_discover_tests(packed_picture_test)

add_executable(text_test text_test.cpp)
target_link_libraries(text_test PRIVATE show GTest::gtest_main)
target_compile_definitions(text_test PRIVATE SKAV_DATA="${PROJECT_SOURCE_DIR}/data")
target_link_options(text_test PRIVATE -Wl,--wrap=FT_Load_Char -Wl,--wrap=FT_Set_Pixel_Sizes -Wl,--wrap=FT_Init_FreeType)
gtest_discover_tests(text_test)

if(SKAV_TOOLS)
  add_executable(packer_test packer_test.cpp)
  target_link_libraries(packer_test PRIVATE packer GTest::gtest_main)
  target_compile_definitions(packer_test PRIVATE
    SKAV_PICTURE="${PROJECT_SOURCE_DIR}/art/loading/loading.png")
  gtest_discover_tests(packer_test)

  add_test(NAME skav_pack_command
    COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/skav_pack_test.sh $<TARGET_FILE:skav-pack> ${PROJECT_SOURCE_DIR})
endif()

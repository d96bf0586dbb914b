# Debian's cross compiler for 64-bit ARM, with the libraries that tests/arm64/run has fetched. What is built runs in
# the emulator.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

cmake_path(ABSOLUTE_PATH CMAKE_CURRENT_LIST_DIR BASE_DIRECTORY ${CMAKE_CURRENT_LIST_DIR} NORMALIZE OUTPUT_VARIABLE here)
cmake_path(GET here PARENT_PATH tests)
cmake_path(GET tests PARENT_PATH project)
set(root ${project}/build/arm64-libraries)
set(triplet aarch64-linux-gnu)
set(libraries ${root}/usr/lib/${triplet}:${root}/lib/${triplet})

set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})
set(CMAKE_FIND_ROOT_PATH ${root})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CXX_FLAGS_INIT "-isystem ${root}/usr/include")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${libraries}")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/${triplet} -E LD_LIBRARY_PATH=${libraries})

# What cpack makes: a Debian package of each component, and an archive of the sources. The programs are configured for
# packages by the preset `package`.
set(CPACK_PACKAGE_NAME skav)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL show data)
if(TARGET skav-export)
  list(APPEND CPACK_COMPONENTS_ALL export)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${SKAV_HOMEPAGE})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

# The packages' maintainer is who makes them: git's user, else this machine's.
foreach(part name email)
  execute_process(COMMAND git config user.${part} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    OUTPUT_VARIABLE user_${part} OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endforeach()
if(NOT user_email)
  cmake_host_system_information(RESULT host QUERY HOSTNAME)
  execute_process(COMMAND id -un OUTPUT_VARIABLE user_name OUTPUT_STRIP_TRAILING_WHITESPACE)
  set(user_email ${user_name}@${host})
endif()
set(SKAV_MAINTAINER "${user_name} <${user_email}>" CACHE STRING "Maintainer of the packages; by default git's user")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${SKAV_MAINTAINER})

set(warning "The show contains bright flashing light. It may affect people with
photosensitive epilepsy.")
set(data_of_this_version "skav-data (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

set(CPACK_DEBIAN_SHOW_PACKAGE_NAME skav)
set(CPACK_DEBIAN_SHOW_PACKAGE_SECTION games)
set(CPACK_DEBIAN_SHOW_PACKAGE_DEPENDS ${data_of_this_version})
set(CPACK_DEBIAN_SHOW_PACKAGE_SUGGESTS skav-export)
set(CPACK_DEBIAN_SHOW_DESCRIPTION "real-time show of music and pictures
skav plays 162 seconds of music and, in step with it, a fixed sequence of
full-screen scenes in OpenGL. All textures are computed when it starts.
The texts on screen are in English or German.

${warning}")

set(CPACK_DEBIAN_EXPORT_PACKAGE_NAME skav-export)
set(CPACK_DEBIAN_EXPORT_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_EXPORT_PACKAGE_DEPENDS "${data_of_this_version}, libgl1-mesa-dri") # which libEGL loads
set(CPACK_DEBIAN_EXPORT_DESCRIPTION "pictures and video of the show skav
skav-export draws the show skav without a display, frame by frame, and writes
it as a video with its music, as stills or as a storyboard, in multiples of
its size.

${warning}")

set(CPACK_DEBIAN_DATA_PACKAGE_NAME skav-data)
set(CPACK_DEBIAN_DATA_PACKAGE_SECTION games)
set(CPACK_DEBIAN_DATA_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DATA_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DATA_DESCRIPTION "music and fonts of the show skav
The files that skav plays and of which skav-export makes videos: two pieces of
music and the two fonts of the texts on screen. The textures are computed from
these very fonts, so other versions of them will not do.")

# What Debian expects besides; cpack knows only variables whose names begin with CPACK_.
string(TIMESTAMP SKAV_CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(debian/changelog.in changelog.Debian @ONLY)
set(CPACK_SKAV_CHANGELOG ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian)
set(CPACK_SKAV_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/debian/finish.cmake)

# The source archive holds what git does not ignore.
set(CPACK_SOURCE_GENERATOR TXZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME skav-${PROJECT_VERSION})
string(REGEX REPLACE "([][+.*()^?$|{}])" "\\\\\\1" root "${PROJECT_SOURCE_DIR}")
set(CPACK_SOURCE_IGNORE_FILES ^${root}/\\.git/ ^${root}/build/ ^${root}/\\.cache/ \\.swp$
  ^${root}/[^/]*\\.mp4$ ^${root}/[^/]*\\.png$ ^${root}/part-[^/]*$ ^${root}/parts\\.txt$ ^${root}/chapters\\.txt$ ^${root}/compile_commands\\.json$)

include(CPack)

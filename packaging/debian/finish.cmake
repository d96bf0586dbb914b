# Called by cpack between installing and packing: makes of the installed files what Debian expects of packages.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
if(NOT CPACK_SKAV_PREFIX STREQUAL "/usr")
  message(FATAL_ERROR "The programs look for their data under ${CPACK_SKAV_PREFIX}: configure with --preset package")
endif()

# compress(FILE...): each to FILE.gz, without name and time.
function(compress)
  execute_process(COMMAND gzip -9nf ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} key)
  set(package ${CPACK_DEBIAN_${key}_PACKAGE_NAME})
  set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}/usr/share)
  set(documents ${share}/doc/${package})

  configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright ${documents}/copyright COPYONLY)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/../../CHANGELOG.md ${documents}/changelog COPYONLY)
  configure_file(${CPACK_SKAV_CHANGELOG} ${documents}/changelog.Debian COPYONLY)
  file(GLOB manuals ${share}/man/man?/*.?)
  compress(${documents}/changelog ${documents}/changelog.Debian ${manuals})

  set(overrides ${CMAKE_CURRENT_LIST_DIR}/${package}.overrides)
  if(EXISTS ${overrides})
    configure_file(${overrides} ${share}/lintian/overrides/${package} COPYONLY)
  endif()
endforeach()

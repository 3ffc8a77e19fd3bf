# Run by cpack between installation and packing: gives every package its copyright and changelogs, the
# documents that belong to it, and compresses what Debian wants compressed.

set(examples_of_tools scripts/store-backup)
set(examples_of_host_tools examples/README.md examples/home-gateway.xml
                           examples/home-gateway.instances examples/home-gateway.values
                           examples/home-gateway.attributes examples/upgrade)
set(examples_of_development examples/client)
file(GLOB documents RELATIVE ${CPACK_ZRCFG_SOURCE_DIR} ${CPACK_ZRCFG_SOURCE_DIR}/docs/*.md
     ${CPACK_ZRCFG_SOURCE_DIR}/docs/*.svg)
set(documents_of_development ${documents})

# copy(DIRECTORY FILE...): files of the source tree.
function(copy directory)
  foreach(file ${ARGN})
    file(COPY ${CPACK_ZRCFG_SOURCE_DIR}/${file} DESTINATION ${directory}
         NO_SOURCE_PERMISSIONS
         FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
         DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                               WORLD_READ WORLD_EXECUTE)
  endforeach()
endfunction()

foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} key)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX})
  set(directory ${root}/share/doc/${CPACK_DEBIAN_${key}_PACKAGE_NAME})
  copy(${directory} ${documents_of_${component}})
  copy(${directory}/examples ${examples_of_${component}})
  file(COPY ${CPACK_ZRCFG_DEBIAN_DIR}/copyright DESTINATION ${directory})
  configure_file(${CPACK_ZRCFG_DEBIAN_DIR}/changelog ${directory}/changelog.Debian COPYONLY)
  configure_file(${CPACK_ZRCFG_SOURCE_DIR}/CHANGELOG.md ${directory}/changelog COPYONLY)
  # Where Debian's zsh looks for what packages bring.
  if(EXISTS ${root}/share/zsh/site-functions)
    file(RENAME ${root}/share/zsh/site-functions ${root}/share/zsh/vendor-completions)
  endif()
  file(GLOB pages ${root}/share/man/man?/*)
  execute_process(COMMAND gzip -9n ${directory}/changelog.Debian ${directory}/changelog ${pages}
                  COMMAND_ERROR_IS_FATAL ANY)
endforeach()

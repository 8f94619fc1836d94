# zel_add_test_plugin(<name> <source>... [DOC <document>] [DIRECTORY <plugin directory>])
# Builds a collector plugin as the core finds it: lib<name>.pi.so one level below the plugin
# directory (default: plugins/ in the current binary directory), in <name>/, with the
# specification document copied beside it as <name>.properties.xml (a library that
# registers no plugin needs none). The target is named zel_plugin_<name>; it links
# libzelcore.so only, as plugins do.
function(zel_add_test_plugin name)
  cmake_parse_arguments(ARG "" "DOC;DIRECTORY" "" ${ARGN})
  if(NOT ARG_DIRECTORY)
    set(ARG_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/plugins)
  endif()
  set(output ${ARG_DIRECTORY}/${name})
  add_library(zel_plugin_${name} MODULE ${ARG_UNPARSED_ARGUMENTS})
  target_link_libraries(zel_plugin_${name} PRIVATE zelcore)
  set_target_properties(zel_plugin_${name} PROPERTIES
    OUTPUT_NAME ${name}
    PREFIX "lib"
    SUFFIX ".pi.so"
    LIBRARY_OUTPUT_DIRECTORY ${output}
    C_STANDARD 99
    C_EXTENSIONS OFF)
  if(ARG_DOC)
    configure_file(${ARG_DOC} ${output}/${name}.properties.xml COPYONLY)
  endif()
endfunction()

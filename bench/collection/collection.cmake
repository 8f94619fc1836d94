# The collection benchmark: a plugin that fills instances through the C interface, against
# the same instances built through the object model.
include(ZelTestPlugin)
zel_add_test_plugin(benchcollect ${CMAKE_CURRENT_LIST_DIR}/benchcollect.c
  DOC ${CMAKE_CURRENT_LIST_DIR}/benchcollect.properties.xml
  DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/plugins)
add_executable(bench_collection ${CMAKE_CURRENT_LIST_DIR}/../bench_collection.cpp)
target_link_libraries(bench_collection PRIVATE zelcore benchmark::benchmark)
target_compile_definitions(bench_collection PRIVATE
  ZEL_BENCH_PLUGIN_DIR="${CMAKE_CURRENT_BINARY_DIR}/plugins")
add_dependencies(bench_collection zel_plugin_benchcollect)

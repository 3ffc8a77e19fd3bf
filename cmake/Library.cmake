# libzrcfg.so from the sources of its folders.

set(ZRCFG_LIBRARY_SOURCES
    attr/attr_bulk_update.cpp
    attr/attr_query.cpp
    attr/attr_update.cpp
    attr/object_attr.cpp
    attr/param_attr.cpp
    attr/property_update.cpp
    config/base64.cpp
    config/encryption_mode.cpp
    config/hex.cpp
    config/process_flag.cpp
    config/uci_option.cpp
    core/call_frame.cpp
    core/checked_url.cpp
    core/fresh_section.cpp
    core/object_image.cpp
    core/object_path.cpp
    core/property_fd.cpp
    core/property_load.cpp
    core/record_index.cpp
    core/single_value.cpp
    core/single_value_calls.cpp
    core/store_file.cpp
    core/value_section.cpp
    core/visibility.cpp
    enum/node_info.cpp
    enum/sub_objects.cpp
    enum/url_split.cpp
    lifecycle/add_instance.cpp
    lifecycle/delete_instance.cpp
    lifecycle/dir_reader.cpp
    lifecycle/dir_tree.cpp
    lifecycle/entry_counter.cpp
    lifecycle/export_instances.cpp
    lifecycle/export_values.cpp
    lifecycle/free_number.cpp
    lifecycle/instance_steps.cpp
    lifecycle/instance_url.cpp
    lifecycle/object_exists.cpp
    lifecycle/static_instance.cpp
    lifecycle/table.cpp
    lock/lock_file.cpp
    lock/object_lock.cpp
    log/zrcfg_log.cpp
    values/bulk_calls.cpp
    values/bulk_values.cpp
    values/checked_single_value.cpp
    values/request_check.cpp
    values/value_filter.cpp
    values/value_list.cpp
    values/value_table.cpp
    wan/connection_index.cpp
    wan/xml_url.cpp)
list(TRANSFORM ZRCFG_LIBRARY_SOURCES PREPEND ${PROJECT_SOURCE_DIR}/)

# Defines a shared library of those sources; further arguments are libraries to compile with.
function(zrcfg_define_library target)
  add_library(${target} SHARED ${ZRCFG_LIBRARY_SOURCES})
  target_link_libraries(${target} PRIVATE zrcfg_flags zrcfg_library_flags zrlogmgr zrcfg_uci ${ARGN})
  target_include_directories(
    ${target} INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_compile_definitions(${target} INTERFACE _FILE_OFFSET_BITS=64)
  # Linking as C keeps the C++ runtime out of the library's dependencies.
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
endfunction()

zrcfg_define_library(zrcfg zrcfg_sanitizers zrcfg_coverage)
set_target_properties(zrcfg PROPERTIES VERSION ${ZRCFG_VERSION} SOVERSION ${ZRCFG_SOVERSION})
add_library(zrcfg::zrcfg ALIAS zrcfg)

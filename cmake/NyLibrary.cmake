# Declares one library of the family.
include_guard(GLOBAL)
include(GenerateExportHeader)
include(NyInstall)

# ny_add_library(<name> SOURCES <files> [PUBLIC <targets>] [PRIVATE <targets>])
#
# Makes the shared library lib<name>.so.0 with hidden visibility, the export header <lower-case name>_export.h with the
# macro <UPPER-CASE NAME>_EXPORT, the alias Ny::<name>, and its installation. SOURCES lists headers too: moc reads them.
# PUBLIC and PRIVATE name the libraries it links; only what its public headers include belongs into PUBLIC.
function(ny_add_library NAME)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;PUBLIC;PRIVATE")
    add_library(${NAME} SHARED ${ARG_SOURCES})
    add_library(Ny::${NAME} ALIAS ${NAME})
    generate_export_header(${NAME})
    target_include_directories(${NAME} PUBLIC
        "$<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>"
        "$<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/velmora/${NAME}>")
    target_link_libraries(${NAME} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} $<BUILD_INTERFACE:NyBuildFlags>)
    target_link_options(${NAME} PRIVATE LINKER:--no-undefined)
    if(NY_SANITIZE)
        # The sanitizers' runtime is resolved when the program is linked, so undefined symbols are expected here.
        target_link_options(${NAME} PRIVATE LINKER:-z,undefs)
    endif()
    set_target_properties(${NAME} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION 0
        BUILD_RPATH_USE_ORIGIN ON
        INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${NAME} LIBRARY DESTINATION "${NY_INSTALL_LIBRARIES}" NAMELINK_SKIP)
endfunction()

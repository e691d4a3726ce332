# Where an installation puts things. Everything is found relative to the programs, so that a tree runs from any prefix:
#
#   bin/velmora-albuma, bin/quilloservice   links to the programs
#   lib/velmora/bin/                        the programs, side by side: the service looks for the builder beside itself
#   lib/velmora/lib/                        the family's libraries and plug-ins, a private ONNX Runtime
#   lib/velmora/share                       a link to share/, so that the programs' "../share" is the prefix's
#   share/VELMORA/                          configuration, facts of the installation, designs, models
include_guard(GLOBAL)

set(NY_INSTALL_PRIVATE "${CMAKE_INSTALL_LIBDIR}/velmora")
set(NY_INSTALL_PROGRAMS "${NY_INSTALL_PRIVATE}/bin")
set(NY_INSTALL_LIBRARIES "${NY_INSTALL_PRIVATE}/lib")
set(NY_INSTALL_RESOURCES "${CMAKE_INSTALL_DATADIR}/VELMORA")

# ny_install_link(<folder> <name> <target>): a relative link; folder and target count from the prefix.
function(ny_install_link FOLDER NAME TARGET)
    file(RELATIVE_PATH path "/prefix/${FOLDER}" "/prefix/${TARGET}")
    set(links "${CMAKE_BINARY_DIR}/install-links/${FOLDER}")
    file(MAKE_DIRECTORY "${links}")
    file(CREATE_LINK "${path}" "${links}/${NAME}" SYMBOLIC)
    install(FILES "${links}/${NAME}" DESTINATION "${FOLDER}")
endfunction()

# ny_install_program(<target> <command>): the program itself, and the link by which people call it.
function(ny_install_program TARGET COMMAND)
    set_target_properties(${TARGET} PROPERTIES BUILD_RPATH_USE_ORIGIN ON INSTALL_RPATH "$ORIGIN/../lib")
    install(TARGETS ${TARGET} RUNTIME DESTINATION "${NY_INSTALL_PROGRAMS}")
    get_target_property(file ${TARGET} OUTPUT_NAME)
    if(NOT file)
        set(file ${TARGET})
    endif()
    ny_install_link("${CMAKE_INSTALL_BINDIR}" ${COMMAND} "${NY_INSTALL_PROGRAMS}/${file}")
endfunction()

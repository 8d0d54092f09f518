# veldra serve's system service and an example of its settings, in the runtime package.
install(FILES ${CMAKE_CURRENT_LIST_DIR}/veldra-serve.service DESTINATION lib/systemd/system COMPONENT runtime)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/serve.ini DESTINATION ${CMAKE_INSTALL_DATADIR}/veldra COMPONENT runtime)

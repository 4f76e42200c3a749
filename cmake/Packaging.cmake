# What the Debian package holds beyond each folder's own install rules, and the package itself
# (CPack; scripts/package builds it): the show library's headers beside the platform's and a
# pkg-config file for the platform library. tpcli's man page and completion come with tpcli.

install(DIRECTORY ${PROJECT_SOURCE_DIR}/TrafficPolicy/include/
   DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/TrafficPolicyShow)

# Relocatable: the paths are taken from where the .pc file lies, so that an unpacked package
# (dpkg -x into any folder) works as well as an installed one.
file(RELATIVE_PATH tp_pc_to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file(${CMAKE_CURRENT_LIST_DIR}/trafficpolicyshow-platform.pc.in
   ${PROJECT_BINARY_DIR}/trafficpolicyshow-platform.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/trafficpolicyshow-platform.pc
   DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME traffic-policy-show)
set(CPACK_PACKAGE_VENDOR "traffic-policy show maintainers")
set(CPACK_PACKAGE_CONTACT "traffic-policy show maintainers <maintainers@traffic-policy.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
   "tpcli and the traffic-policy show library, with the platform library for developers")
set(CPACK_PACKAGE_DESCRIPTION
   "tpcli answers the show traffic-policy commands and clears counters on a device state snapshot, \
writes its counters for fleet monitoring (tpcli metrics), and loads the show library as a device CLI \
does. The platform library, its headers, a CMake package and a pkg-config file are included.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
# The run-time dependencies (libstdc++, simdjson, mimalloc, cpp-httplib) as dpkg-shlibdeps finds them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_STRIP_FILES ON)
include(CPack)

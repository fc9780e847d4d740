# The program for the shell and what goes with it: the udev rule, the folder of the locks, the units. The
# component "ctl" is a Debian package by itself, for computers without a display, where neither a window
# toolkit nor GStreamer must be installed. The package with the window contains it too and takes its place:
# two packages that need each other would be more to install for everyone, and nobody needs both.
set(ctl ${packaging}/marvikctl)

configure_file(${CMAKE_SOURCE_DIR}/packaging/udev/70-marviktools.rules.in
    ${CMAKE_BINARY_DIR}/package/70-marviktools.rules @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/package/70-marviktools.rules DESTINATION lib/udev/rules.d COMPONENT ctl)
install(FILES ${packaging}/marviktools.tmpfiles DESTINATION lib/tmpfiles.d RENAME marviktools.conf
    COMPONENT ctl)

install(TARGETS marvikctl RUNTIME DESTINATION bin COMPONENT ctl)
install(TARGETS marvikctl-helper RUNTIME DESTINATION lib/marviktools COMPONENT ctl)
install(FILES ${CMAKE_SOURCE_DIR}/marvikctl/schema/marvikctl.schema.json DESTINATION share/marviktools
    COMPONENT ctl)
install_compressed(marvikctl/marvikctl.1 marvikctl.1.gz share/man/man1 COMPONENT ctl)

install(FILES ${ctl}/marvikctl.bash DESTINATION share/bash-completion/completions RENAME marvikctl
    COMPONENT ctl)
install(FILES ${ctl}/_marvikctl DESTINATION share/zsh/vendor-completions COMPONENT ctl)
install(FILES ${ctl}/marvikctl.fish DESTINATION share/fish/vendor_completions.d COMPONENT ctl)

# Nothing enables the units: whoever wants the watch does.
install(FILES ${ctl}/marvikctl-watch.service DESTINATION lib/systemd/system COMPONENT ctl)
install(FILES ${ctl}/marvikctl-watch.user.service DESTINATION lib/systemd/user
    RENAME marvikctl-watch.service COMPONENT ctl)
install(FILES ${ctl}/marvikctl.sysusers DESTINATION lib/sysusers.d RENAME marvikctl.conf COMPONENT ctl)

# Of the package by itself.
install_compressed(changelog changelog.Debian.gz share/doc/marvikctl COMPONENT ctl-package EXCLUDE_FROM_ALL)
install(FILES ${packaging}/copyright DESTINATION share/doc/marvikctl COMPONENT ctl-package EXCLUDE_FROM_ALL)

# shellcheck shell=bash disable=SC2034
# The Debian packages that the commands need, named here and nowhere else.

# To build Ostrix and to use it: without a font Qt shows no text; xdg-utils opens the help; mail
# servers are checked against ca-certificates.
build_packages=(
    g++ cmake ninja-build pkgconf
    qt6-base-dev qtkeychain-qt6-dev libsqlite3-dev libsqlitecpp-dev libgmime-3.0-dev
    fonts-dejavu-core xdg-utils ca-certificates
)

# A desktop that offers Wayland alone.
wayland_packages=(qt6-wayland)

# The sample holds Chinese and Japanese messages.
sample_packages=(fonts-droid-fallback)

# A display for a machine that has none.
headless_packages=(xvfb)

# openssl makes the certificates of the tests' mail servers; python3-aiosmtpd is one that takes mail;
# poppler-utils reads back what is printed; the others make a desktop's keychain, and reach it.
test_packages=(
    libgtest-dev libgmock-dev openssl poppler-utils python3-aiosmtpd
    dbus-daemon python3-dbus python3-gi libsecret-1-0
)
# The tests' servers of inboxes; they start them themselves.
server_packages=(dovecot-imapd dovecot-pop3d)

# What the benchmarks measure with and beside.
bench_packages=(sqlite3 maildir-utils notmuch xvfb python3 openssl libbenchmark-dev libxcb1-dev)

ci_packages=(git clang-format shellcheck)
# What packaging/lint adds.
lint_packages=(git clang-tidy)

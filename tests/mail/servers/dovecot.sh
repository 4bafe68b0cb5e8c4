#!/usr/bin/env bash
# dovecot.sh FOLDER CERTIFICATES NAME IMAP IMAPS POP3 POP3S: an IMAP and POP3 server on 127.0.0.1 for
# the Maildir FOLDER/mail of user@example.org, password s3cret "word", in the foreground. It shows
# the certificate NAME and runs as root or as any other user. FOLDER must be short: it holds the
# names of sockets.
set -euo pipefail

folder=$1 certificates=$2 name=$3 imap=$4 imaps=$5 pop3=$6 pop3s=$7
mkdir -p "$folder/run" "$folder/state"

# As root the server gives up its rights as it always does; else everything is the user's own.
if ((EUID == 0)); then
    owner=mail group=mail
    chown -R mail:mail "$folder/mail"
    chmod 755 "$folder"
    as_user=
else
    owner=$(id -un) group=$(id -gn)
    as_user="
default_internal_user = $owner
default_internal_group = $group
default_login_user = $owner
service anvil {
  chroot =
}
service imap-login {
  chroot =
}
service pop3-login {
  chroot =
}
service stats {
  chroot =
}"
fi

cat >"$folder/users" <<'USERS'
user@example.org:{PLAIN}s3cret "word"
USERS
chmod 644 "$folder/users"

cat >"$folder/dovecot.conf" <<CONFIGURATION
base_dir = $folder/run
state_dir = $folder/state
log_path = $folder/dovecot.log
instance_name = test$imap
listen = 127.0.0.1
protocols = imap pop3
ssl = yes
ssl_cert = <$certificates/$name.pem
ssl_key = <$certificates/$name.key
auth_mechanisms = ${DOVECOT_MECHANISMS:-plain login scram-sha-256}
auth_failure_delay = 0
first_valid_uid = 1
mail_location = maildir:$folder/mail:INDEX=$folder/index:CONTROL=$folder/index
mail_fsync = never
passdb {
  driver = passwd-file
  args = scheme=PLAIN $folder/users
}
userdb {
  driver = static
  args = uid=$owner gid=$group home=$folder
}
service imap-login {
  inet_listener imap {
    port = $imap
  }
  inet_listener imaps {
    port = $imaps
    ssl = yes
  }
}
service pop3-login {
  inet_listener pop3 {
    port = $pop3
  }
  inet_listener pop3s {
    port = $pop3s
    ssl = yes
  }
}
# Refused logins must not slow down the next ones.
service anvil {
  unix_listener anvil-auth-penalty {
    mode = 0
  }
}$as_user
CONFIGURATION

mkdir -p "$folder/index"
chown "$owner:$group" "$folder/index"
exec /usr/sbin/dovecot -F -c "$folder/dovecot.conf"

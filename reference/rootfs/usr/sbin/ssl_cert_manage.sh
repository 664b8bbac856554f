#!/bin/sh
# ssl_cert_manage.sh get_altnames_from_cert NAME
#
# Prints the host names and addresses that a certificate of the web interface stands for, one on a line. NAME is
# a file below /mnt/main/etc/cert, or a whole path.
[ "$1" = get_altnames_from_cert ] || exit 2
case $2 in
    /*) file=$2 ;;
    *) file=/mnt/main/etc/cert/$2 ;;
esac
names=$(openssl x509 -in "$file" -noout -ext subjectAltName) || exit 1
echo "$names" | tr ',' '\n' | sed -n 's/^ *\(DNS\|IP Address\)://p'

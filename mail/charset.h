#pragma once

#include <QByteArrayView>
#include <QString>

/// Decodes text whose sender labelled it `label` ("iso-8859-1"; any letter case, with or without
/// hyphens). Labels mean what mail programs mean by them (WHATWG encoding standard): iso-8859-1 is
/// Windows-1252, gb2312 is GB 18030, euc-kr is code page 949, shift_jis is code page 932. Without a
/// label that is known, and for us-ascii: UTF-8 when the bytes are valid UTF-8, else Windows-1252.
/// Never fails: a byte without meaning becomes U+FFFD. NUL bytes are kept, a byte-order mark is
/// not.
QString decode_charset(QByteArrayView bytes, QByteArrayView label);

// The exported conversions between plain types.
#include "qxPlainConversion.h"
#include "qxTypeConversion.h"

namespace qx::typeconvert
{

template <class To, class From>
bool dtconvert(To& to, const From& from, int format, char*)
{
    return plainConversion<To, From>::run(to, from, format);
}

// NOLINTNEXTLINE(bugprone-macro-parentheses)
#define QX_PAIR(To, From) template QXUTILS_API bool dtconvert<To, From>(To&, const From&, int, char*);
#define QX_PAIR_BOTH_WAYS(A, B) QX_PAIR(A, B) QX_PAIR(B, A)
#define QX_TO_EACH_NUMBER(From)                                                                              \
    QX_PAIR(bool, From)                                                                                      \
    QX_PAIR(short, From)                                                                                     \
    QX_PAIR(ushort, From)                                                                                    \
    QX_PAIR(int, From)                                                                                       \
    QX_PAIR(uint, From)                                                                                      \
    QX_PAIR(long32, From)                                                                                    \
    QX_PAIR(ulong32, From)                                                                                   \
    QX_PAIR(uint64, From)                                                                                    \
    QX_PAIR(float, From)                                                                                     \
    QX_PAIR(double, From)
#define QX_FROM_NUMBER(From) QX_TO_EACH_NUMBER(From) QX_PAIR(string, From)

QX_FROM_NUMBER(bool)
QX_FROM_NUMBER(short)
QX_FROM_NUMBER(ushort)
QX_FROM_NUMBER(int)
QX_FROM_NUMBER(uint)
QX_FROM_NUMBER(long32)
QX_FROM_NUMBER(ulong32)
QX_FROM_NUMBER(uint64)
QX_FROM_NUMBER(float)
QX_FROM_NUMBER(double)
QX_TO_EACH_NUMBER(string)
QX_PAIR_BOTH_WAYS(string, date)
QX_PAIR_BOTH_WAYS(string, time)
QX_PAIR_BOTH_WAYS(string, timestamp)
QX_PAIR_BOTH_WAYS(date, timestamp)
QX_PAIR(time, timestamp)
QX_PAIR(string, locString)
QX_PAIR(directory, string)
QX_PAIR(string, std::wstring)

} // namespace qx::typeconvert

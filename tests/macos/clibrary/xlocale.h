// SPDX-License-Identifier: MIT
#pragma once

#include <ctype.h>
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>
#include <wctype.h>

// Here they look into a locale, and a Mac's C locale is none to look into.
#undef isdigit_l
#undef isxdigit_l

// What the C++ library calls with a locale of its own.
extern "C" {
struct lconv *localeconv_l(locale_t locale);
int asprintf_l(char **text, locale_t locale, const char *format, ...);
int snprintf_l(char *text, size_t size, locale_t locale, const char *format, ...);
int sscanf_l(const char *text, locale_t locale, const char *format, ...);
size_t mbrtowc_l(wchar_t *wide, const char *text, size_t size, mbstate_t *state, locale_t locale);
size_t mbrlen_l(const char *text, size_t size, mbstate_t *state, locale_t locale);
size_t mbsrtowcs_l(wchar_t *wide, const char **text, size_t size, mbstate_t *state, locale_t locale);
size_t mbsnrtowcs_l(wchar_t *wide, const char **text, size_t count, size_t size, mbstate_t *state, locale_t locale);
size_t wcsnrtombs_l(char *text, const wchar_t **wide, size_t count, size_t size, mbstate_t *state, locale_t locale);
size_t wcrtomb_l(char *text, wchar_t wide, mbstate_t *state, locale_t locale);
int mbtowc_l(wchar_t *wide, const char *text, size_t size, locale_t locale);
int isdigit_l(int character, locale_t locale);
int isxdigit_l(int character, locale_t locale);
wint_t btowc_l(int character, locale_t locale);
int wctob_l(wint_t wide, locale_t locale);
}

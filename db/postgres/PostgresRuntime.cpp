// The server-side runtime of the PostgreSQL dialect: what SQL Server does that PostgreSQL spells
// differently or not at all, one function per overload. NULL in gives NULL out (STRICT) unless a
// function says otherwise. Text arguments are compared and searched under "C": PostgreSQL 15
// refuses pattern and substring searches on the nondeterministic collation of the shop's columns.
#include "db/postgres/PostgresRuntime.h"

namespace qx::db {

namespace {

// Every helper is a function of its arguments alone (those reading the transaction's
// qx.maintenance setting aside), so the server may call it in a parallel worker. Unmarked, a
// function is PARALLEL UNSAFE, and one call of it anywhere in a query keeps the whole query in
// one process: a cross-tab's row source through qx_int_text read its lines at half the speed of
// the same query written by hand. The readers of the setting run in the leader only (RESTRICTED).
std::vector<std::string> markedParallel(std::vector<std::string> functions) {
    for (auto& function : functions) {
        const auto body = function.find(" AS ", function.find(") RETURNS "));
        const bool readsSetting = function.find("current_setting(") != std::string::npos;
        function.insert(body, readsSetting ? " PARALLEL RESTRICTED" : " PARALLEL SAFE");
    }
    return functions;
}

}  // namespace

const std::vector<std::string>& postgresRuntimeFunctions() {
    static const std::vector<std::string> functions = markedParallel({
        // An error raised with the given message; the callers give it a type. STABLE, so that the
        // planner never raises it while folding a branch that does not run.
        "CREATE FUNCTION qx_fail(text) RETURNS text LANGUAGE plpgsql STABLE AS $q$BEGIN RAISE EXCEPTION USING MESSAGE = $1; END $q$",
        // The time of a datetime rounded to SQL Server's 1/300 s (.000, .003, .007, half away
        // from zero); .999 becomes the next second.
        R"(CREATE FUNCTION qx_ticks(timestamp) RETURNS timestamp LANGUAGE sql IMMUTABLE AS $q$
SELECT date_trunc('second', $1) +
       round(round(round((extract(microseconds FROM $1) % 1000000) / 1000) * 0.3) * 10 / 3) * INTERVAL '1 millisecond'$q$)",
        // The result of DATEADD or date + n: refused outside 1753-01-01 .. 9999-12-31.
        R"(CREATE FUNCTION qx_date_added(timestamp) RETURNS timestamp LANGUAGE sql STABLE AS $q$
SELECT CASE WHEN $1 IS NULL OR ($1 >= '1753-01-01' AND $1 < '10000-01-01') THEN $1
  ELSE qx_fail('Adding a value to a ''datetime'' column caused an overflow.')::timestamp END$q$)",
        // A text too long for its column: SQL Server's message, naming the table and the column.
        R"(CREATE FUNCTION qx_truncated(text, text, text) RETURNS text LANGUAGE sql STABLE AS $q$
SELECT qx_fail('String or binary data would be truncated in table ''' || $2 || ''', column ''' || $3 ||
               '''. Truncated value: ''' || left($1, 40) || '''.')$q$)",
        // qx_fits(text, length, table, column): the text when it has at most length characters (NULL fits).
        R"(CREATE FUNCTION qx_fits(text, integer, text, text) RETURNS text LANGUAGE sql STABLE AS $q$
SELECT CASE WHEN $1 IS NULL OR char_length($1) <= $2 THEN $1 ELSE qx_truncated($1, $3, $4) END$q$)",
        // a ^ b
        "CREATE FUNCTION qx_bitxor(integer, integer) RETURNS integer LANGUAGE sql IMMUTABLE STRICT AS 'SELECT $1 # $2'",
        "CREATE FUNCTION qx_bitxor(bigint, bigint) RETURNS bigint LANGUAGE sql IMMUTABLE STRICT AS 'SELECT $1 # $2'",
        // REPLICATE, SPACE: a negative count gives NULL.
        "CREATE FUNCTION qx_replicate(text, bigint) RETURNS text LANGUAGE sql IMMUTABLE STRICT AS "
        "'SELECT CASE WHEN $2 < 0 THEN NULL ELSE repeat($1, $2::integer) END'",
        "CREATE FUNCTION qx_space(bigint) RETURNS text LANGUAGE sql IMMUTABLE STRICT AS "
        "'SELECT CASE WHEN $1 < 0 THEN NULL ELSE repeat('' '', $1::integer) END'",
        // EOMONTH(date[, months]): the last day of that month, at midnight.
        "CREATE FUNCTION qx_eomonth(timestamp, bigint) RETURNS timestamp(0) LANGUAGE sql IMMUTABLE STRICT AS "
        "'SELECT (date_trunc(''month'', $1) + make_interval(months => ($2 + 1)::integer) - INTERVAL ''1 day'')::timestamp(0)'",
        "CREATE FUNCTION qx_eomonth(timestamp) RETURNS timestamp(0) LANGUAGE sql IMMUTABLE STRICT AS 'SELECT qx_eomonth($1, 0)'",
        // ROUND(x, places[, truncate]): half away from zero, negative places round left of the
        // point, the type of x kept.
        "CREATE FUNCTION qx_round(numeric, integer) RETURNS numeric LANGUAGE sql IMMUTABLE STRICT AS 'SELECT round($1, $2)'",
        "CREATE FUNCTION qx_round(integer, integer) RETURNS integer LANGUAGE sql IMMUTABLE STRICT AS "
        "'SELECT round($1::numeric, $2)::integer'",
        "CREATE FUNCTION qx_round(bigint, integer) RETURNS bigint LANGUAGE sql IMMUTABLE STRICT AS "
        "'SELECT round($1::numeric, $2)::bigint'",
        "CREATE FUNCTION qx_round(double precision, integer) RETURNS double precision LANGUAGE sql IMMUTABLE STRICT AS "
        "'SELECT round($1::numeric, $2)::double precision'",
        "CREATE FUNCTION qx_round(numeric, integer, integer) RETURNS numeric LANGUAGE sql IMMUTABLE STRICT AS "
        "'SELECT CASE WHEN $3 = 0 THEN round($1, $2) ELSE trunc($1, $2) END'",
        "CREATE FUNCTION qx_round(integer, integer, integer) RETURNS integer LANGUAGE sql IMMUTABLE STRICT AS "
        "'SELECT qx_round($1::numeric, $2, $3)::integer'",
        "CREATE FUNCTION qx_round(double precision, integer, integer) RETURNS double precision LANGUAGE sql IMMUTABLE STRICT AS "
        "'SELECT qx_round($1::numeric, $2, $3)::double precision'",
        // ISNUMERIC: a number, or text that converts to one of SQL Server's numeric types: a sign,
        // a currency mark ($ or ¥), digits with thousands commas before the point, an exponent
        // after digits; blanks around are ignored. NULL is 0.
        "CREATE FUNCTION qx_isnumeric(text) RETURNS integer LANGUAGE sql IMMUTABLE AS $$"
        "SELECT CASE WHEN t IS NULL OR t = '' THEN 0 "
        "WHEN t ~ '^[+-]?(\\$|¥)?[+-]?[0-9,]*(\\.[0-9]*)?$' THEN 1 "
        "WHEN t ~ '^[+-]?(\\$|¥)?[+-]?[0-9,]*(\\.[0-9]*)?[eEdD][+-]?[0-9]+$' AND t ~ '^[^eEdD]*[0-9]' THEN 1 ELSE 0 END "
        "FROM (SELECT btrim($1, E' \\t\\r\\n') AS t) v$$",
        "CREATE FUNCTION qx_isnumeric(numeric) RETURNS integer LANGUAGE sql IMMUTABLE AS "
        "'SELECT CASE WHEN $1 IS NULL THEN 0 ELSE 1 END'",
        "CREATE FUNCTION qx_isnumeric(double precision) RETURNS integer LANGUAGE sql IMMUTABLE AS "
        "'SELECT CASE WHEN $1 IS NULL THEN 0 ELSE 1 END'",
        // DATEFROMPARTS(y, m, d)
        "CREATE FUNCTION qx_datefromparts(bigint, bigint, bigint) RETURNS timestamp(0) LANGUAGE plpgsql IMMUTABLE STRICT AS $$\n"
        "BEGIN\n"
        "  IF $1 < 1 OR $1 > 9999 THEN RAISE EXCEPTION USING MESSAGE = 'x'; END IF;\n"
        "  RETURN make_date($1::integer, $2::integer, $3::integer)::timestamp(0);\n"
        "EXCEPTION WHEN others THEN\n"
        "  RAISE EXCEPTION 'Cannot construct data type date, some of the arguments have values which are not valid.';\n"
        "END $$",
        // A divisor: zero gives NULL in a maintenance batch (the transaction's qx.maintenance is
        // 'on'), as SQL Server does with ARITHABORT and ANSI_WARNINGS off; else it divides (and fails).
        "CREATE FUNCTION qx_divisor(integer) RETURNS integer LANGUAGE sql STABLE AS "
        "$q$SELECT CASE WHEN $1 = 0 AND current_setting('qx.maintenance', true) = 'on' THEN NULL ELSE $1 END$q$",
        "CREATE FUNCTION qx_divisor(bigint) RETURNS bigint LANGUAGE sql STABLE AS "
        "$q$SELECT CASE WHEN $1 = 0 AND current_setting('qx.maintenance', true) = 'on' THEN NULL ELSE $1 END$q$",
        "CREATE FUNCTION qx_divisor(numeric) RETURNS numeric LANGUAGE sql STABLE AS "
        "$q$SELECT CASE WHEN $1 = 0 AND current_setting('qx.maintenance', true) = 'on' THEN NULL ELSE $1 END$q$",
        "CREATE FUNCTION qx_divisor(double precision) RETURNS double precision LANGUAGE sql STABLE AS "
        "$q$SELECT CASE WHEN $1 = 0 AND current_setting('qx.maintenance', true) = 'on' THEN NULL ELSE $1 END$q$",
        // A LIKE pattern of SQL Server (% _ [set] [^set]) as an anchored regular expression.
        R"(CREATE FUNCTION qx_like_regex(text) RETURNS text LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
DECLARE
  p text := $1 COLLATE "C";
  out text := '^';
  i integer := 1;
  c text;
  close integer;
BEGIN
  WHILE i <= length(p) LOOP
    c := substr(p, i, 1);
    IF c = '%' THEN out := out || '.*';
    ELSIF c = '_' THEN out := out || '.';
    ELSIF c = '[' AND strpos(substr(p, i + 1), ']') > 0 THEN
      close := i + strpos(substr(p, i + 1), ']');
      out := out || '[' || replace(replace(substr(p, i + 1, close - i - 1), '\', '\\'), '[', '\[') || ']';
      i := close;
    ELSIF c ~ '[.^$*+?(){}|\\\[\]-]' THEN out := out || '\' || c;
    ELSE out := out || c;
    END IF;
    i := i + 1;
  END LOOP;
  RETURN out || '$';
END $q$)",
        // PATINDEX(pattern, text): where the pattern first matches, 0 when nowhere; a leading or
        // trailing % lets the match start or end anywhere.
        R"(CREATE FUNCTION qx_patindex(text, text) RETURNS bigint LANGUAGE sql IMMUTABLE STRICT AS $q$
SELECT regexp_instr($2 COLLATE "C",
  CASE WHEN $1 LIKE '\%%' THEN '' ELSE '^' END ||
  substr(qx_like_regex(ltrim(rtrim($1 COLLATE "C", '%'), '%')), 2,
         length(qx_like_regex(ltrim(rtrim($1 COLLATE "C", '%'), '%'))) - 2) ||
  CASE WHEN $1 LIKE '%\%' THEN '' ELSE '$' END, 1, 1, 0, 'i')$q$)",
        // REPLACE: every occurrence, case ignored; an empty pattern replaces nothing.
        R"(CREATE FUNCTION qx_replace(text, text, text) RETURNS text LANGUAGE sql IMMUTABLE STRICT AS $q$
SELECT CASE WHEN $2 COLLATE "C" = '' THEN $1 ELSE
  regexp_replace($1 COLLATE "C", regexp_replace($2 COLLATE "C", '([.^$*+?()\[\]{}|\\-])', '\\\1', 'g'),
                 replace($3 COLLATE "C", '\', '\\'), 'gi') END$q$)",
        // CHARINDEX(needle, text, start): case and width ignored, searching from start (below 1: from
        // 1); an empty needle is found nowhere.
        R"(CREATE FUNCTION qx_charindex(text, text, bigint) RETURNS bigint LANGUAGE sql IMMUTABLE STRICT AS $q$
SELECT CASE WHEN p = 0 OR $1 = '' THEN 0 ELSE p + s - 1 END FROM (
  SELECT greatest($3, 1) AS s, strpos(lower(normalize(substr($2, greatest($3, 1)::integer), NFKC)) COLLATE "C",
                                      lower(normalize($1, NFKC)) COLLATE "C") AS p) v$q$)",
        // STUFF(text, start, length, insert): NULL when start is outside the text or length negative.
        R"(CREATE FUNCTION qx_stuff(text, bigint, bigint, text) RETURNS text LANGUAGE sql IMMUTABLE AS $q$
SELECT CASE WHEN $1 IS NULL OR $2 IS NULL OR $3 IS NULL OR $2 < 1 OR $2 > length($1) OR $3 < 0 THEN NULL
  ELSE substr($1, 1, ($2 - 1)::integer) || coalesce($4, '') || substr($1, least($2 + $3, 2147483647)::integer) END$q$)",
        // QUOTENAME(name[, quote]): [ ] ' " ( ) < > { } `, the closing one doubled inside.
        R"(CREATE FUNCTION qx_quotename(text, text) RETURNS text LANGUAGE sql IMMUTABLE AS $q$
SELECT CASE WHEN $1 IS NULL OR $2 IS NULL OR length($1) > 128 THEN NULL ELSE
  (SELECT CASE WHEN c IS NULL THEN NULL ELSE o || replace($1 COLLATE "C", c, c || c) || c END
   FROM (SELECT CASE $2 COLLATE "C" WHEN '[' THEN '[' WHEN ']' THEN '[' WHEN '''' THEN '''' WHEN '"' THEN '"' WHEN '(' THEN '('
                  WHEN ')' THEN '(' WHEN '<' THEN '<' WHEN '>' THEN '<' WHEN '{' THEN '{' WHEN '}' THEN '{' WHEN '`' THEN '`' END AS o,
                CASE $2 COLLATE "C" WHEN '[' THEN ']' WHEN ']' THEN ']' WHEN '''' THEN '''' WHEN '"' THEN '"' WHEN '(' THEN ')'
                  WHEN ')' THEN ')' WHEN '<' THEN '>' WHEN '>' THEN '>' WHEN '{' THEN '}' WHEN '}' THEN '}' WHEN '`' THEN '`' END AS c) q)
  END$q$)",
        "CREATE FUNCTION qx_quotename(text) RETURNS text LANGUAGE sql IMMUTABLE AS $q$SELECT qx_quotename($1, '[')$q$",
        // CAST(x AS bit): 1 for any number but zero, 'true'/'false', NULL stays NULL.
        "CREATE FUNCTION qx_bit(numeric) RETURNS integer LANGUAGE sql IMMUTABLE STRICT AS $q$SELECT CASE WHEN $1 <> 0 THEN 1 ELSE 0 END$q$",
        "CREATE FUNCTION qx_bit(double precision) RETURNS integer LANGUAGE sql IMMUTABLE STRICT AS "
        "$q$SELECT CASE WHEN $1 <> 0 THEN 1 ELSE 0 END$q$",
        R"(CREATE FUNCTION qx_bit(text) RETURNS integer LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
DECLARE t text := lower(btrim($1 COLLATE "C"));
BEGIN
  IF t = 'true' THEN RETURN 1; END IF;
  IF t = 'false' THEN RETURN 0; END IF;
  BEGIN
    RETURN CASE WHEN t::numeric <> 0 THEN 1 ELSE 0 END;
  EXCEPTION WHEN others THEN
    RAISE EXCEPTION 'Conversion failed when converting the varchar value ''%'' to data type bit.', $1;
  END;
END $q$)",
        // CAST to tinyint, smallint, bigint: the whole part, refused outside the type's range.
        R"(CREATE FUNCTION qx_int(numeric, text) RETURNS bigint LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
DECLARE v numeric := trunc($1);
BEGIN
  IF ($2 = 'tinyint' AND (v < 0 OR v > 255)) OR ($2 = 'smallint' AND (v < -32768 OR v > 32767))
     OR ($2 = 'bigint' AND (v < -9223372036854775808 OR v > 9223372036854775807)) OR ($2 = 'int' AND (v < -2147483648 OR v > 2147483647)) THEN
    RAISE EXCEPTION 'Arithmetic overflow error converting expression to data type %.', $2;
  END IF;
  RETURN v;
END $q$)",
        // CAST of a text to an integer type: blanks around it ignored, '' is 0, anything but a
        // whole number refused in SQL Server's words.
        R"(CREATE FUNCTION qx_int(text, text) RETURNS bigint LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
DECLARE t text := btrim($1 COLLATE "C");
BEGIN
  IF t = '' THEN RETURN 0; END IF;
  IF t !~ '^[+-]?[0-9]+$' THEN
    RAISE EXCEPTION 'Conversion failed when converting the varchar value ''%'' to data type %.', $1, $2;
  END IF;
  RETURN qx_int(t::numeric, $2);
END $q$)",
        // TRY_CAST / TRY_CONVERT: the value converted, or NULL when it does not convert.
        R"(CREATE FUNCTION qx_try_int(text, text) RETURNS bigint LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
DECLARE t text := btrim($1 COLLATE "C");
BEGIN
  IF t !~ '^[+-]?[0-9]+$' THEN RETURN NULL; END IF;
  RETURN qx_int(t::numeric, $2);
EXCEPTION WHEN others THEN RETURN NULL;
END $q$)",
        R"(CREATE FUNCTION qx_try_int(numeric, text) RETURNS bigint LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
BEGIN
  RETURN qx_int($1, $2);
EXCEPTION WHEN others THEN RETURN NULL;
END $q$)",
        R"(CREATE FUNCTION qx_try_int(double precision, text) RETURNS bigint LANGUAGE sql IMMUTABLE STRICT AS $q$
SELECT qx_try_int($1::numeric, $2)$q$)",
        R"(CREATE FUNCTION qx_try_decimal(text, integer, integer) RETURNS numeric LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
BEGIN
  RETURN qx_try_decimal(btrim($1 COLLATE "C")::numeric, $2, $3);
EXCEPTION WHEN others THEN RETURN NULL;
END $q$)",
        R"(CREATE FUNCTION qx_try_decimal(numeric, integer, integer) RETURNS numeric LANGUAGE sql IMMUTABLE STRICT AS $q$
SELECT CASE WHEN abs(round($1, $3)) >= power(10::numeric, $2 - $3) THEN NULL ELSE round($1, $3) END$q$)",
        R"(CREATE FUNCTION qx_try_decimal(double precision, integer, integer) RETURNS numeric LANGUAGE sql IMMUTABLE STRICT AS $q$
SELECT qx_try_decimal($1::numeric, $2, $3)$q$)",
        R"(CREATE FUNCTION qx_try_float(text) RETURNS double precision LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
BEGIN
  RETURN btrim($1 COLLATE "C")::double precision;
EXCEPTION WHEN others THEN RETURN NULL;
END $q$)",
        "CREATE FUNCTION qx_try_float(double precision) RETURNS double precision LANGUAGE sql IMMUTABLE STRICT AS $q$SELECT $1$q$",
        R"(CREATE FUNCTION qx_try_datetime(text) RETURNS timestamp LANGUAGE plpgsql STABLE STRICT AS $q$
DECLARE d timestamp(3);
BEGIN
  d := qx_ticks(btrim($1 COLLATE "C")::timestamp(3));
  RETURN CASE WHEN date_part('year', d) < 1753 THEN NULL ELSE d END;
EXCEPTION WHEN others THEN RETURN NULL;
END $q$)",
        "CREATE FUNCTION qx_try_datetime(timestamp) RETURNS timestamp LANGUAGE sql IMMUTABLE STRICT AS $q$SELECT qx_ticks($1::timestamp(3))$q$",
        R"(CREATE FUNCTION qx_try_bit(text) RETURNS integer LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
BEGIN
  RETURN qx_bit($1);
EXCEPTION WHEN others THEN RETURN NULL;
END $q$)",
        "CREATE FUNCTION qx_try_bit(numeric) RETURNS integer LANGUAGE sql IMMUTABLE STRICT AS $q$SELECT qx_bit($1)$q$",
        // ISDATE: 1 for text that reads as a date from 1753 on.
        R"(CREATE FUNCTION qx_isdate(text) RETURNS integer LANGUAGE plpgsql STABLE AS $q$
BEGIN
  IF $1 IS NULL OR btrim($1 COLLATE "C") = '' THEN RETURN 0; END IF;
  RETURN CASE WHEN qx_try_datetime($1) IS NULL THEN 0 ELSE 1 END;
END $q$)",
        "CREATE FUNCTION qx_isdate(timestamp) RETURNS integer LANGUAGE sql IMMUTABLE AS $q$SELECT CASE WHEN $1 IS NULL THEN 0 ELSE 1 END$q$",
        // DATENAME(part, date): English month and weekday names, other parts as numbers.
        R"(CREATE FUNCTION qx_datename(text, timestamp) RETURNS text LANGUAGE sql IMMUTABLE STRICT AS $q$
SELECT CASE lower($1 COLLATE "C")
  WHEN 'month' THEN to_char($2, 'FMMonth') WHEN 'mm' THEN to_char($2, 'FMMonth') WHEN 'm' THEN to_char($2, 'FMMonth')
  WHEN 'weekday' THEN to_char($2, 'FMDay') WHEN 'dw' THEN to_char($2, 'FMDay') WHEN 'w' THEN to_char($2, 'FMDay')
  WHEN 'year' THEN to_char($2, 'FMYYYY') WHEN 'yy' THEN to_char($2, 'FMYYYY') WHEN 'yyyy' THEN to_char($2, 'FMYYYY')
  WHEN 'quarter' THEN to_char($2, 'Q') WHEN 'qq' THEN to_char($2, 'Q') WHEN 'q' THEN to_char($2, 'Q')
  WHEN 'dayofyear' THEN to_char($2, 'FMDDD') WHEN 'dy' THEN to_char($2, 'FMDDD') WHEN 'y' THEN to_char($2, 'FMDDD')
  WHEN 'day' THEN to_char($2, 'FMDD') WHEN 'dd' THEN to_char($2, 'FMDD') WHEN 'd' THEN to_char($2, 'FMDD')
  WHEN 'hour' THEN to_char($2, 'FMHH24') WHEN 'hh' THEN to_char($2, 'FMHH24')
  WHEN 'minute' THEN to_char($2, 'FMMI') WHEN 'mi' THEN to_char($2, 'FMMI') WHEN 'n' THEN to_char($2, 'FMMI')
  WHEN 'second' THEN to_char($2, 'FMSS') WHEN 'ss' THEN to_char($2, 'FMSS') WHEN 's' THEN to_char($2, 'FMSS') END$q$)",
        // STR(x[, length[, decimals]]): right-aligned, fewer decimals when they do not fit, '*'
        // when the whole part does not.
        R"(CREATE FUNCTION qx_str(double precision, bigint, bigint) RETURNS text LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
DECLARE d integer := least($3, 16); t text;
BEGIN
  IF $2 <= 0 OR $2 > 8000 OR $3 < 0 THEN RETURN NULL; END IF;
  LOOP
    t := round($1::numeric, d)::text;
    EXIT WHEN length(t) <= $2 OR d = 0;
    d := d - 1;
  END LOOP;
  IF length(t) > $2 THEN RETURN repeat('*', $2::integer); END IF;
  RETURN lpad(t, $2::integer);
END $q$)",
        "CREATE FUNCTION qx_str(double precision, bigint) RETURNS text LANGUAGE sql IMMUTABLE STRICT AS $q$SELECT qx_str($1, $2, 0)$q$",
        "CREATE FUNCTION qx_str(double precision) RETURNS text LANGUAGE sql IMMUTABLE STRICT AS $q$SELECT qx_str($1, 10, 0)$q$",
        // A float as text: six significant digits, an exponent of three digits outside 1e-4 .. 1e6.
        R"(CREATE FUNCTION qx_float_text(double precision) RETURNS text LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
DECLARE e integer; m numeric; t text;
BEGIN
  IF $1 = 0 THEN RETURN '0'; END IF;
  e := floor(log(abs($1::numeric)));
  m := round($1::numeric / power(10::numeric, e), 5);
  IF abs(m) >= 10 THEN m := m / 10; e := e + 1; END IF;
  IF e < -4 OR e >= 6 THEN
    t := trim(trailing '.' from trim(trailing '0' from m::text));
    RETURN t || 'e' || CASE WHEN e < 0 THEN '-' ELSE '+' END || lpad(abs(e)::text, 3, '0');
  END IF;
  t := round($1::numeric, 5 - e)::text;
  IF strpos(t, '.') > 0 THEN t := trim(trailing '.' from trim(trailing '0' from t)); END IF;
  RETURN t;
END $q$)",
        "CREATE FUNCTION qx_float_text(text) RETURNS text LANGUAGE sql IMMUTABLE STRICT AS $q$SELECT $1$q$",
        // An integer as text of at most the given length, padded with blanks to it when fixed is
        // 1 (CHAR(n)): "*" when its digits and sign do not fit.
        "CREATE FUNCTION qx_int_text(bigint, integer, integer) RETURNS text LANGUAGE sql IMMUTABLE AS "
        "$q$SELECT CASE WHEN length($1::text) > $2 THEN '*' WHEN $3 = 1 THEN rpad($1::text, $2) ELSE $1::text END$q$",
        // LEFT and RIGHT refuse a negative count.
        R"(CREATE FUNCTION qx_count(bigint, text) RETURNS integer LANGUAGE plpgsql IMMUTABLE AS $q$
BEGIN
  IF $1 < 0 THEN RAISE EXCEPTION 'Invalid length parameter passed to the % function.', $2; END IF;
  RETURN least($1, 2147483647);
END $q$)",
        // DATALENGTH of a number or date: the size SQL Server stores it in.
        "CREATE FUNCTION qx_sized(bigint, integer) RETURNS integer LANGUAGE sql IMMUTABLE AS $q$SELECT CASE WHEN $1 IS NULL THEN NULL ELSE $2 END$q$",
        "CREATE FUNCTION qx_sized(double precision, integer) RETURNS integer LANGUAGE sql IMMUTABLE AS "
        "$q$SELECT CASE WHEN $1 IS NULL THEN NULL ELSE $2 END$q$",
        "CREATE FUNCTION qx_sized(numeric, integer) RETURNS integer LANGUAGE sql IMMUTABLE AS $q$SELECT CASE WHEN $1 IS NULL THEN NULL ELSE $2 END$q$",
        "CREATE FUNCTION qx_sized(timestamp, integer) RETURNS integer LANGUAGE sql IMMUTABLE AS "
        "$q$SELECT CASE WHEN $1 IS NULL THEN NULL ELSE $2 END$q$",
        // CAST(x AS smalldatetime): to the nearest minute, 1900-01-01 to 2079-06-06.
        R"(CREATE FUNCTION qx_smalldatetime(timestamp) RETURNS timestamp(0) LANGUAGE plpgsql IMMUTABLE STRICT AS $q$
DECLARE d timestamp(0) := date_trunc('minute', $1 + INTERVAL '30 seconds');
BEGIN
  IF d < '1900-01-01' OR d >= '2079-06-07' THEN
    RAISE EXCEPTION 'The conversion of a varchar data type to a smalldatetime data type resulted in an out-of-range value.';
  END IF;
  RETURN d;
END $q$)",
        // CAST(text AS datetime): blanks around ignored, '' is 1900-01-01, the time rounded to
        // 1/300 s, a date before 1753 out of range.
        R"(CREATE FUNCTION qx_datetime(text) RETURNS timestamp LANGUAGE plpgsql STABLE STRICT AS $q$
DECLARE t text := btrim($1 COLLATE "C"); d timestamp;
BEGIN
  IF t = '' THEN RETURN TIMESTAMP '1900-01-01'; END IF;
  BEGIN
    d := qx_ticks(t::timestamp(3));
  EXCEPTION WHEN others THEN
    RAISE EXCEPTION 'Conversion failed when converting date and/or time from character string.';
  END;
  IF d < '1753-01-01' OR d >= '10000-01-01' THEN
    RAISE EXCEPTION 'The conversion of a varchar data type to a datetime data type resulted in an out-of-range value.';
  END IF;
  RETURN d;
END $q$)",
        "CREATE FUNCTION qx_datetime(timestamp) RETURNS timestamp LANGUAGE sql IMMUTABLE STRICT AS $q$SELECT qx_ticks($1::timestamp(3))$q$",
        // CONVERT(datetime, number): days since 1900-01-01, the fraction the time of day, within
        // datetime's years 1753 to 9999.
        R"(CREATE FUNCTION qx_datetime(double precision) RETURNS timestamp LANGUAGE sql IMMUTABLE STRICT AS $q$
SELECT CASE WHEN $1 >= -53690 AND $1 < 2958464 THEN qx_ticks((TIMESTAMP '1900-01-01' + $1 * INTERVAL '1 day')::timestamp(3))
  ELSE qx_fail('Arithmetic overflow error converting expression to data type datetime.')::timestamp END$q$)",
        // CONVERT(datetime, text, style): the day, month and year in the style's order.
        R"(CREATE FUNCTION qx_datetime(text, integer) RETURNS timestamp LANGUAGE plpgsql STABLE STRICT AS $q$
DECLARE t text := btrim($1 COLLATE "C");
BEGIN
  RETURN CASE
    WHEN $2 IN (3, 103) THEN to_timestamp(t, 'DD/MM/YYYY HH24:MI:SS')
    WHEN $2 IN (4, 104) THEN to_timestamp(t, 'DD.MM.YYYY HH24:MI:SS')
    WHEN $2 IN (5, 105) THEN to_timestamp(t, 'DD-MM-YYYY HH24:MI:SS')
    WHEN $2 IN (13, 113) THEN to_timestamp(t, 'DD Mon YYYY HH24:MI:SS:MS')
    WHEN $2 IN (6, 106) THEN to_timestamp(t, 'DD Mon YYYY')
    ELSE qx_ticks(t::timestamp(3)) END::timestamp(3);
EXCEPTION WHEN others THEN
  RAISE EXCEPTION 'Conversion failed when converting date and/or time from character string.';
END $q$)",
        "CREATE FUNCTION qx_datetime(timestamp, integer) RETURNS timestamp LANGUAGE sql IMMUTABLE STRICT AS $q$SELECT qx_ticks($1::timestamp(3))$q$",
        // DATEDIFF of the parts the dialect does not write itself: boundaries crossed.
        R"(CREATE FUNCTION qx_datediff(text, timestamp, timestamp) RETURNS bigint LANGUAGE sql IMMUTABLE STRICT AS $q$
SELECT CASE lower($1 COLLATE "C")
  WHEN 'hour' THEN h WHEN 'hh' THEN h
  WHEN 'minute' THEN h * 60 + (date_part('minute', $3) - date_part('minute', $2))::bigint
  WHEN 'mi' THEN h * 60 + (date_part('minute', $3) - date_part('minute', $2))::bigint
  WHEN 'n' THEN h * 60 + (date_part('minute', $3) - date_part('minute', $2))::bigint
  WHEN 'second' THEN floor(date_part('epoch', date_trunc('second', $3)) - date_part('epoch', date_trunc('second', $2)))::bigint
  WHEN 'ss' THEN floor(date_part('epoch', date_trunc('second', $3)) - date_part('epoch', date_trunc('second', $2)))::bigint
  WHEN 's' THEN floor(date_part('epoch', date_trunc('second', $3)) - date_part('epoch', date_trunc('second', $2)))::bigint
  WHEN 'week' THEN w WHEN 'wk' THEN w WHEN 'ww' THEN w
  WHEN 'quarter' THEN q WHEN 'qq' THEN q WHEN 'q' THEN q END
FROM (SELECT (($3::date - $2::date) * 24 + date_part('hour', $3) - date_part('hour', $2))::bigint AS h,
             (((date_trunc('week', $3 + INTERVAL '1 day'))::date - (date_trunc('week', $2 + INTERVAL '1 day'))::date) / 7)::bigint AS w,
             ((date_part('year', $3) - date_part('year', $2)) * 4 + date_part('quarter', $3) - date_part('quarter', $2))::bigint AS q) v$q$)",
    });
    return functions;
}

}  // namespace qx::db

\echo Use "CREATE EXTENSION latchkey" to load this file. \quit

CREATE FUNCTION latchkey_encrypt(
  data bytea, password bytea, hash text, cipher text,
  provider text DEFAULT 'any', key_bits integer DEFAULT 0, rc2_effective_bits integer DEFAULT 0)
RETURNS bytea AS 'MODULE_PATHNAME', 'sql_latchkey_encrypt'
LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE COST 100;

CREATE FUNCTION latchkey_decrypt(
  data bytea, password bytea, hash text, cipher text,
  provider text DEFAULT 'any', key_bits integer DEFAULT 0, rc2_effective_bits integer DEFAULT 0)
RETURNS bytea AS 'MODULE_PATHNAME', 'sql_latchkey_decrypt'
LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE COST 100;

CREATE FUNCTION latchkey_try_decrypt(
  data bytea, password bytea, hash text, cipher text,
  provider text DEFAULT 'any', key_bits integer DEFAULT 0, rc2_effective_bits integer DEFAULT 0)
RETURNS bytea AS 'MODULE_PATHNAME', 'sql_latchkey_try_decrypt'
LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE COST 100;

CREATE FUNCTION latchkey_digest(data bytea, hash text)
RETURNS bytea AS 'MODULE_PATHNAME', 'sql_latchkey_digest'
LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE COST 50;

CREATE FUNCTION latchkey_identify(
  data bytea, password bytea, VARIADIC more bytea[] DEFAULT '{}',
  OUT hash text, OUT cipher text, OUT provider text, OUT key_bits integer,
  OUT rc2_effective_bits integer, OUT padding integer, OUT probability double precision)
RETURNS SETOF record AS 'MODULE_PATHNAME', 'sql_latchkey_identify'
LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE COST 10000 ROWS 40;

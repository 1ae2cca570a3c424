// Errors in a JScript client.
var api = new ActiveXObject("Latchkey.clsCryptoAPI");
var notSet = "91: Object variable or With block variable not set: no clsMain exists on this thread";

check("without clsMain", errorOf(function () { api.Encrypt(1, 1); }), notSet);
var main = new ActiveXObject("Latchkey.clsMain");
check("with clsMain", errorOf(function () { api.Encrypt(); }), "none");

check("null", errorOf(function () { api.StringToByteArray(null); }), "94: Invalid use of Null");
check("no array", errorOf(function () { api.ByteArrayToString("abc"); }), "13: Type mismatch");
check("array object", errorOf(function () { api.Password = [65, 66, 0]; }), "13: Type mismatch");
check("undefined", errorOf(function () { api.ByteArrayToString(undefined); }), "9: Subscript out of range");
check("no output", errorOf(function () { api.ByteArrayToString(api.OutputData); }), "9: Subscript out of range");
check("missing argument", errorOf(function () { api.ConvertStringFromHex(); }) !== "none", true);
check("too many arguments", errorOf(function () { api.Encrypt(1, 2, 3); }) !== "none", true);
check("no number", errorOf(function () { api.Encrypt("many", 1); }) !== "none", true);
check("unknown member", errorOf(function () { api.Nothing(); }) !== "none", true);
check("read-only property", errorOf(function () { main.ErrorType = 1; }) !== "none", true);
check("nothing in the record", main.ErrorExists, true);
finish(13);

// Prints the digests of a text by every hash algorithm, with the hexadecimal form of the text, a
// salt and some random bytes.
//
//   cscript //nologo hash_text.js TEXT
var main = new ActiveXObject("Latchkey.clsMain");      // first: makes the error record of this thread
var api = new ActiveXObject("Latchkey.clsCryptoAPI");
var timer = new ActiveXObject("Latchkey.clsTimer");

// The type library's numbers, whose names are not available to scripts.
var latchkeyHashMD5 = 1, latchkeyHashMD4 = 2, latchkeyHashMD2 = 3, latchkeyHashSHA1 = 4;
var latchkeyErrorRunTime = 1;

var hashes = [
    ["MD5", latchkeyHashMD5], ["MD4", latchkeyHashMD4], ["MD2", latchkeyHashMD2], ["SHA-1", latchkeyHashSHA1]
];

// No operation raises an error: an empty result means failure, and the record has the reason.
function failure() {
    if (!main.ErrorExists) {
        return "refused by the provider";
    }
    return main.ErrorType === latchkeyErrorRunTime ? main.RTErrorDescription : main.AppErrorDescription;
}

function resultOr(text) {
    return text !== "" ? text : "failed: " + failure();
}

function printAll(text) {
    WScript.Echo("text    " + text);
    WScript.Echo("hex     " + api.ConvertStringToHex(text));
    for (var i = 0; i < hashes.length; i++) {
        WScript.Echo((hashes[i][0] + "      ").substr(0, 8) + resultOr(api.CreateHash(text, hashes[i][1], true)));
    }
    // Letters and random text fail with 433 or 434 (Overflow) at times on some machines. A raw salt,
    // CreateSaltValue(20, false), does not.
    WScript.Echo("salt    " + resultOr(api.CreateSaltValue(20, true)));
    WScript.Echo("random  " + resultOr(api.CreateRandom(32, true, true)));
    WScript.Echo("in " + timer.GetElapsedTime() + " ms");
}

if (WScript.Arguments.Count() === 1) {
    printAll(WScript.Arguments.Item(0));
} else {
    WScript.Echo("usage: cscript //nologo hash_text.js TEXT");
    WScript.Quit(2);
}

// Prints the digests of a text by every hash algorithm, with the hexadecimal form of the text, a
// salt and some random bytes.
//
//   cscript //nologo hash_text.js TEXT
var main = new ActiveXObject("Latchkey.clsMain");      // first: makes the error record of this thread
var api = new ActiveXObject("Latchkey.clsCryptoAPI");
var timer = new ActiveXObject("Latchkey.clsTimer");

var algorithms = ["MD5", "MD4", "MD2", "SHA-1"];       // hash numbers 1 to 4

// No operation raises an error: an empty result means failure, and the record tells why.
function digestOf(text, number) {
    var digest = api.CreateHash(text, number, true);
    if (digest === "") {
        return "failed: " + (main.ErrorExists ? main.AppErrorDescription : "refused by the provider");
    }
    return digest;
}

function printAll(text) {
    WScript.Echo("text    " + text);
    WScript.Echo("hex     " + api.ConvertStringToHex(text));
    for (var i = 0; i < algorithms.length; i++) {
        WScript.Echo((algorithms[i] + "      ").substr(0, 8) + digestOf(text, i + 1));
    }
    WScript.Echo("salt    " + api.CreateSaltValue(20, true));
    WScript.Echo("random  " + api.CreateRandom(32, true, true));
    WScript.Echo("in " + timer.GetElapsedTime() + " ms");
}

if (WScript.Arguments.Count() === 1) {
    printAll(WScript.Arguments.Item(0));
} else {
    WScript.Echo("usage: cscript //nologo hash_text.js TEXT");
    WScript.Quit(2);
}

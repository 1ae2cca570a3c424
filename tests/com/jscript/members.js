// Every member of the three classes. JScript passes everything by value.
var main = new ActiveXObject("Latchkey.clsMain.1");
var api = new ActiveXObject("Latchkey.clsCryptoAPI.1");
var timer = new ActiveXObject("Latchkey.clsTimer.1");

// RFC 1321 and RFC 3174.
check("MD5", api.CreateHash("abc", 1, true), "900150983CD24FB0D6963F7D28E17F72");
check("SHA-1", api.CreateHash("abc", 4, true), "A9993E364706816ABA3E25717850C26C9CD0D89D");
check("undefined counts as empty", api.CreateHash(undefined, 1, true), "D41D8CD98F00B204E9800998ECF8427E");
check("number as text", api.ConvertStringToHex(12), "3132");
check("text as number", api.CreateHash("abc", "1", true), "900150983CD24FB0D6963F7D28E17F72");

// Measured on a Windows CryptoAPI: base provider, MD5, RC4.
var secret = api.StringToByteArray("correct horse battery staple");
api.Password = secret;
check("by value stays", api.ByteArrayToString(secret), "correct horse battery staple");
check("password", api.ByteArrayToString(api.Password), "correct horse battery staple");
api.InputData = api.StringToByteArray(api.ConvertStringFromHex("04090E13"));
check("Encrypt", api.Encrypt(1, 1), true);
check("ciphertext", api.ConvertStringToHex(api.ByteArrayToString(api.OutputData)), "1A9544BD");
api.InputData = api.OutputData;
check("Decrypt", api.Decrypt(1, 1), true);
check("plaintext", api.ConvertStringToHex(api.ByteArrayToString(api.OutputData), true), "04090E13");

api.EnhancedProvider = false;
check("3DES refused", api.Encrypt(1, 4), false);
check("3DES location", main.ErrorLocationID, 719);
check("3DES number", main.AppErrorNumber, 121);
check("3DES description", main.AppErrorDescription, "Bad encryption type");
check("3DES exists", main.ErrorExists, true);
check("3DES type", main.ErrorType, 2);
check("3DES step", main.ErrorMachineState, 0);
api.UseDefaultPWD = false;
api.Password = api.StringToByteArray("");
check("no password", api.ByteArrayToString(api.Password), "");

check("CreateRandom", api.CreateRandom(10, true, true).length, 10);
check("CreateSaltValue", /^[A-Za-z]{12}$/.test(api.CreateSaltValue(12, true)), true);
check("number to bytes", api.ByteArrayToString(api.StringToByteArray(-5)), "-5");
check("from hexadecimal", api.ConvertStringFromHex("4120"), "A");

check("negative length", api.CreateRandom(-1), "");
check("run-time type", main.ErrorType, 1);
check("run-time number", main.RTErrorNumber, 5);
check("run-time description", main.RTErrorDescription, "Invalid procedure call or argument");

timer.Start();
check("elapsed", timer.GetElapsedTime() >= 0, true);
check("connection", typeof main.DoesInternetConnectionExist(), "boolean");
finish(29);

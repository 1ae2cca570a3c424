' Omitted optional arguments, at the end and in the middle.
Dim main, api
Set main = CreateObject("Latchkey.clsMain")
Set api = CreateObject("Latchkey.clsCryptoAPI")

Check "no hash number", api.CreateHash("abc"), ""
Check "refusal is not recorded", main.ErrorExists, False
Check "no arguments", api.CreateHash(), ""
Check "no text", api.CreateHash(, 1, True), "D41D8CD98F00B204E9800998ECF8427E"
Check "none in the middle", api.CreateHash("abc", 1, True, , True), "900150983CD24FB0D6963F7D28E17F72"
Check "Encrypt without arguments", api.Encrypt(), False
Check "Encrypt location", main.ErrorLocationID, 718
Check "Encrypt number", main.AppErrorNumber, 115
Check "Decrypt without arguments", api.Decrypt, False
Check "Decrypt location", main.ErrorLocationID, 711
Check "Encrypt without cipher", api.Encrypt(1), False
Check "Encrypt cipher location", main.ErrorLocationID, 719
Check "CreateRandom without arguments", Len(api.CreateRandom()) > 0, True
Check "CreateRandom of no length", api.CreateRandom(0, True), ""
Check "CreateRandom without hexadecimal", Len(api.CreateRandom(8, True)) <= 8, True
Check "CreateSaltValue without arguments", api.CreateSaltValue(), ""
Check "CreateSaltValue of characters", Len(api.CreateSaltValue(8)) <= 8, True
Check "ConvertStringToHex without flag", api.ConvertStringToHex("A"), "41"
Check "ConvertStringToHex with flag", api.ConvertStringToHex("A", True), "41"
Finish 19

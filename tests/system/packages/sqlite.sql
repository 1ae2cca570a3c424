.load mod_latchkey
SELECT CAST(latchkey_decrypt(x'DC3D962329DD1B2F', 'PNEMAIL', 'md5', 'rc2', 'any', 80) AS TEXT);

CREATE EXTENSION latchkey;
SELECT convert_from(latchkey_decrypt('\xDC3D962329DD1B2F', 'PNEMAIL', 'md5', 'rc2', key_bits => 80), 'UTF8');

#include "demo/CatalogueData.h"

#include <array>

namespace ondavia::demo {
namespace {

using enum Genre;

constexpr auto liveCategoryTable = std::to_array<CategoryRow>({
    {11, "PT | Generalistas", general},
    {12, "PT | Notícias", news},
    {13, "PT | Desporto", sport},
    {14, "PT | Cinema e Séries", cinema},
    {15, "Documentários", documentary},
    {16, "Infantil", kids},
    {17, "Música", music},
    {18, "Internacional", international},
    {19, "Adultos [+18]", adult},
});

constexpr auto filmCategoryTable = std::to_array<CategoryRow>({
    {21, "Ação e Aventura", action},
    {22, "Drama", drama},
    {23, "Comédia", comedy},
    {24, "Ficção Científica", science},
    {25, "Terror e Suspense", horror},
    {26, "Animação e Família", kids},
    {27, "Documentários", documentary},
    {28, "Cinema Português", portuguese},
    {29, "Adultos [+18]", adult},
});

constexpr auto seriesCategoryTable = std::to_array<CategoryRow>({
    {31, "Séries | Drama", drama},
    {32, "Séries | Comédia", comedy},
    {33, "Séries | Crime e Suspense", horror},
    {34, "Séries | Ficção Científica", science},
    {35, "Séries | Portuguesas", portuguese},
    {36, "Séries | Infantis", kids},
});

constexpr auto channelTable = std::to_array<ChannelRow>({
    {"Atlântico 1 FHD", general, "atlantico1.pt", 7},
    {"Atlântico 2 HD", general, "atlantico2.pt", 7},
    {"Canal Lusitano FHD", general, "lusitano.pt", 7},
    {"Canal Lusitano HD", general, "lusitano.pt", 7},
    {"TV Ribatejo", general, "ribatejo.pt", 3},
    {"Norte Vivo HD", general, "nortevivo.pt", 7},
    {"Ilhas TV", general, "ilhastv.pt", 3},
    {"Praça Central [4K]", general, "pracacentral.pt", 7},
    {"Notícias 24 FHD", news, "noticias24.pt", 7},
    {"Notícias 24 HD", news, "noticias24.pt", 7},
    {"Canal da Atualidade", news, "atualidade.pt", 3},
    {"Economia Já HD", news, "economiaja.pt", 3},
    {"Parlamento Aberto", news, "parlamento.pt", 0},
    {"Tempo & Mar", news, "tempomar.pt", 0},
    {"Euro Notícias Lusófona HD", news, "euronoticias.pt", 3},
    {"Bancada 1 FHD", sport, "bancada1.pt", 7},
    {"Bancada 2 FHD", sport, "bancada2.pt", 7},
    {"Bancada 3 HD", sport, "bancada3.pt", 7},
    {"Bancada Motores [4K]", sport, "bancadamotores.pt", 7},
    {"Golo TV HD", sport, "golotv.pt", 3},
    {"Surf & Neve", sport, "surfneve.pt", 3},
    {"Ténis em Direto HD", sport, "tenis.pt", 3},
    {"Estádio Nacional FHD", sport, "estadio.pt", 7},
    {"Eventos Desportivos em Direto e em Diferido de Todo o Mundo (Emissão Extra 1) FHD", sport, "", 0},
    {"Cine Azul FHD", cinema, "cineazul.pt", 7},
    {"Cine Azul Ação HD", cinema, "cineazulacao.pt", 7},
    {"Cine Azul Comédia HD", cinema, "cineazulcomedia.pt", 3},
    {"Cine Clássicos", cinema, "cineclassicos.pt", 3},
    {"Série Noite FHD", cinema, "serienoite.pt", 7},
    {"Série Manhã HD", cinema, "seriemanha.pt", 3},
    {"Grande Ecrã [4K]", cinema, "grandeecra.pt", 7},
    {"Matiné", cinema, "matine.pt", 0},
    {"Planeta Vivo FHD", documentary, "planetavivo.pt", 7},
    {"História & Memória HD", documentary, "historia.pt", 7},
    {"Viajar Sem Mapa HD", documentary, "viajar.pt", 3},
    {"Ciência Aberta", documentary, "ciencia.pt", 3},
    {"Cozinha de Autor HD", documentary, "cozinha.pt", 3},
    {"Oceanos [4K]", documentary, "oceanos.pt", 7},
    {"Pirilampo HD", kids, "pirilampo.pt", 3},
    {"Pirilampo Júnior", kids, "pirilampojr.pt", 3},
    {"Canal Balão HD", kids, "balao.pt", 3},
    {"Desenhos em Festa", kids, "desenhos.pt", 0},
    {"Escola na TV", kids, "escolatv.pt", 7},
    {"Palco FHD", music, "palco.pt", 3},
    {"Fado & Guitarra HD", music, "fadoguitarra.pt", 3},
    {"Êxitos 80/90", music, "exitos.pt", 0},
    {"Ritmo Jovem HD", music, "ritmo.pt", 0},
    {"Clássica em Casa", music, "classica.pt", 3},
    {"Televisión Castilla HD", international, "castilla.es", 3},
    {"Chaîne Lumière FHD", international, "lumiere.fr", 3},
    {"Kanal Nordlicht HD", international, "nordlicht.de", 3},
    {"Northern Isles TV", international, "northernisles.uk", 3},
    {"Canale Vesuvio HD", international, "vesuvio.it", 3},
    {"Brasil Horizonte FHD", international, "horizonte.br", 7},
    {"Angola Viva HD", international, "angolaviva.ao", 3},
    {"Телеканал Заря HD", international, "zarya.ru", 0},
    {"Kanał Bałtyk", international, "", 0},
    {"さくらテレビ World", international, "sakura.jp", 0},
    {"Noite Quente HD", adult, "", 0},
    {"Privado 2", adult, "", 0},
});

constexpr auto personTable = std::to_array<std::string_view>({
    "Inês Vilar Prata",   "Tomé Abrantes",       "Leonor Castelo-Mor",   "Duarte Sarmento",
    "Constança Figueira", "Rui Palma Seixas",    "Beatriz Monforte",     "Gaspar Olivença",
    "Marta Roçadas",      "Afonso Tavira",       "Carlota Penaguião",    "Simão Valadares",
    "Élodie Marchais",    "Bastien Courvoisier", "Jürgen Altmeyer",      "Katrin Löwenfeld",
    "Saoirse Kilbrannan", "Callum Strathearn",   "Nerea Olmedo",         "Íñigo Zubizarreta",
    "Giulia Ferrantini",  "Paolo Dellarocca",    "Þóra Hallgrímsdóttir", "Łukasz Wiśnicki",
    "Aiko Tanemura",      "Haruto Mizushima",    "Yara Nascimento Luz",  "Caetano Pirajá",
    "Dulce Kilamba",      "Mateus Cassoma",      "Oksana Dovhan",        "Zoë van Rietveld",
    "Emre Karaçalı",      "Priya Vantipalli",    "Anders Nyqvist",       "Signe Holmegaard",
    "Benedita Lobo Reis", "Xavier Moncada",      "Teresa do Ó",          "Quim Barroselas",
});

constexpr auto openingTable = std::to_array<std::string_view>({
    "Depois de vinte anos longe de casa, um antigo oficial regressa à aldeia onde nasceu e descobre que "
    "ninguém "
    "se lembra dele.",
    "Quando uma tempestade isola a ilha do resto do mundo, uma jovem médica fica sozinha com um segredo que "
    "não "
    "lhe pertence.",
    "Numa cidade que nunca dorme, dois irmãos que não se falam há uma década recebem a mesma carta anónima.",
    "Uma professora reformada aceita guardar a casa da vizinha durante o verão, sem imaginar o que está "
    "fechado na "
    "cave.",
    "No auge do inverno, um comboio noturno parte de Lisboa com quarenta passageiros e chega ao destino com "
    "quarenta e um.",
    "Para pagar as dívidas do pai, uma mecânica de automóveis entra na corrida mais perigosa do continente.",
    "Um arquivista encontra, entre papéis sem valor, o mapa de uma expedição que oficialmente nunca existiu.",
    "A última projecionista de um cinema de bairro decide passar um filme que ninguém devia voltar a ver.",
});

constexpr auto turnTable = std::to_array<std::string_view>({
    "À medida que as pistas se acumulam, percebe que a verdade está mais perto do que gostaria.",
    "Com a ajuda de um aliado improvável, começa uma viagem que vai mudar tudo aquilo em que acreditava.",
    "Mas o passado cobra o seu preço, e cada resposta abre uma porta que devia ter ficado fechada.",
    "Entre promessas quebradas e velhas amizades, terá de escolher de que lado quer ficar.",
    "Só que alguém a vigia, e conhece cada um dos seus passos antes de ela os dar.",
    "Pelo caminho encontra uma família que não procurava e um inimigo que não esperava.",
});

constexpr auto endingTable = std::to_array<std::string_view>({
    "Uma história sobre a coragem, a memória e o preço do silêncio.",
    "Um retrato comovente de quem aprende a recomeçar.",
    "Nada ficará como dantes quando o sol nascer.",
    "Um duelo de inteligências até ao último minuto.",
    "Premiado em vários festivais e baseado em relatos verdadeiros.",
    "Ritmo, humor e um final que ninguém vê chegar.",
});

constexpr auto nounTable = std::to_array<std::string_view>({
    "O Segredo", "A Sombra",    "O Regresso",    "A Herdeira", "O Jardim",   "A Promessa",   "O Caminho",
    "A Noite",   "O Guardião",  "A Travessia",   "O Inverno",  "A Canção",   "O Labirinto",  "A Última Carta",
    "O Enigma",  "A Fortaleza", "O Voo",         "A Estação",  "O Mercador", "A Biblioteca", "O Eclipse",
    "A Maré",    "O Silêncio",  "A Conspiração", "O Pintor",   "A Revolta",  "O Náufrago",   "A Coroa",
    "Crónicas",  "Memórias",    "Operação",      "Missão",
});

constexpr auto tailTable = std::to_array<std::string_view>({
    "de Sintra",     "da Montanha",  "de Viena",      "do Norte",        "das Sete Cidades", "de Cristal",
    "do Relojoeiro", "da Névoa",     "em Chamas",     "sem Nome",        "do Deserto",       "de São Tomé",
    "da Rainha",     "à Meia-Noite", "do Outro Lado", "de Marfim",       "da Serra",         "em Família",
    "dos Inocentes", "de Ferro",     "da Lua",        "do Fim do Mundo", "entre Rios",       "de Alcântara",
    "da Madrugada",  "do Almirante", "de Copenhaga",  "sob a Neve",      "das Amendoeiras",  "da Solidão",
    "de Ouro Preto", "do Coração",   "no Pacífico",   "dos Esquecidos",  "de Papel",         "em Veneza",
});

constexpr auto episodeTable = std::to_array<std::string_view>({
    "O Princípio",        "Portas Fechadas", "A Testemunha",  "Linha Direta",      "Maré Baixa",
    "Três Mentiras",      "O Convidado",     "Vidro Partido", "Longe Daqui",       "A Dívida",
    "Quem Cala Consente", "Meia Verdade",    "Fogo Lento",    "O Irmão Mais Novo", "Sem Rede",
    "Último Comboio",     "A Queda",         "Céu Limpo",     "O Acordo",          "Regresso a Casa",
});

} // namespace

std::span<const CategoryRow> liveCategories() {
    return liveCategoryTable;
}
std::span<const CategoryRow> filmCategories() {
    return filmCategoryTable;
}
std::span<const CategoryRow> seriesCategories() {
    return seriesCategoryTable;
}
std::span<const ChannelRow> channelRows() {
    return channelTable;
}
std::span<const std::string_view> people() {
    return personTable;
}
std::span<const std::string_view> plotOpenings() {
    return openingTable;
}
std::span<const std::string_view> plotTurns() {
    return turnTable;
}
std::span<const std::string_view> plotEndings() {
    return endingTable;
}
std::span<const std::string_view> titleNouns() {
    return nounTable;
}
std::span<const std::string_view> titleTails() {
    return tailTable;
}
std::span<const std::string_view> episodeTitles() {
    return episodeTable;
}

std::string_view genreText(Genre genre) {
    switch (genre) {
    case action:
        return "Ação, Aventura";
    case drama:
        return "Drama, Romance";
    case comedy:
        return "Comédia";
    case science:
        return "Ficção Científica, Mistério";
    case horror:
        return "Terror, Thriller";
    case kids:
        return "Animação, Família";
    case documentary:
        return "Documentário";
    case portuguese:
        return "Drama, Cinema Português";
    case adult:
        return "Adultos";
    default:
        return "Variedades";
    }
}

} // namespace ondavia::demo
